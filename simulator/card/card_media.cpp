// Photo and fingerprints of a card; both follow from its number, so a card always has the same.

#include "simulator/card/card_media.h"

#include <random>

#include "common/card_records.h"
#include "simulator/card/fnv.h"
#include "simulator/card/photo_codec.h"
#include "simulator/card/portrait.h"

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
    QByteArray bytes = head.toUtf8();
    std::mt19937 random(fnv1a(bytes));
    while (bytes.size() < int(IDCARD_FINGERPRINT_SIZE)) {
        bytes.append(static_cast<char>(random() & 0xFFU));
    }
    return bytes;
}

} // namespace

PhotoImage portraitOf(const CardDescription &card)
{
    const std::uint32_t seed = card.photoSeed.value_or(fnv1a(card.idNumber.toUtf8()));
    return drawPortrait(seed,
                        card.sex == QLatin1String("2") ? Hairdresser::Women : Hairdresser::Men);
}

QByteArray photoBmpFile(const CardDescription &card)
{
    return bmpFile(portraitOf(card));
}

QByteArray compressedPhoto(const CardDescription &card)
{
    return compressPhoto(portraitOf(card)).value();
}

QByteArray undecodablePhoto(QByteArray compressedPhoto)
{
    const int middle = compressedPhoto.size() / 2;
    compressedPhoto[middle] = static_cast<char>(~compressedPhoto.at(middle));
    return compressedPhoto;
}

QByteArray fingerprintTemplates(const CardDescription &card)
{
    QByteArray templates;
    for (int finger = 1; finger <= card.fingerprints; ++finger) {
        templates += fingerprintTemplate(card, finger);
    }
    return templates;
}

} // namespace simulator
