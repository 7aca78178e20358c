// Photo and fingerprints of a card; both follow from its number, so a card always has the same.

#include "simulator/card/card_media.h"

#include "common/card_records.h"
#include "simulator/card/photo_codec.h"
#include "simulator/card/portrait.h"
#include "simulator/card/seeded_bytes.h"

namespace simulator
{

namespace
{

// One invented template: a readable head that names the simulator, the finger and the card, then
// bytes that differ from card to card and from finger to finger.
QByteArray fingerprintTemplate(const CardDescription &card, int finger)
{
    const QString head =
        QStringLiteral("SIMULATED FINGERPRINT %1 OF %2\n").arg(finger).arg(card.idNumber);
    return filledUp(head.toUtf8(), IDCARD_FINGERPRINT_SIZE);
}

} // namespace

QByteArray photoBmpFile(const CardDescription &card)
{
    return portraitFile(portraitOf(card));
}

QByteArray compressedPhoto(const CardDescription &card)
{
    return compressPhoto(portraitOf(card), seedOf(card.idNumber.toUtf8()));
}

QByteArray undecodablePhoto(const CardDescription &card)
{
    QByteArray data = compressedPhoto(card);
    const int middle = data.size() / 2;
    data[middle] = static_cast<char>(~data.at(middle));
    return data;
}

QByteArray fingerprintTemplates(const CardDescription &card)
{
    QByteArray templates;
    for (int finger = 1; finger <= card.fingerprints; ++finger)
        templates += fingerprintTemplate(card, finger);
    return templates;
}

} // namespace simulator
