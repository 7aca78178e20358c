// Which text of a card goes where in the chip's text block, as a table, and the answer around it.

#include "simulator/card/raw_record.h"

#include "reader/frame_bytes.h"
#include "simulator/card/card_media.h"
#include "simulator/card/reader_frame.h"
#include "simulator/card/text_fields.h"

namespace simulator
{

namespace
{

using Card = CardDescription;

constexpr CardKind CN = CardKind::RESIDENT;
constexpr CardKind HMT = CardKind::HMT;
constexpr CardKind F17 = CardKind::FOREIGN2017;
constexpr CardKind NEW = CardKind::FOREIGN_NEW;

constexpr QChar SPACE = QLatin1Char(' ');

template <char letter>
QString kindLetter(const CardDescription & /*card*/)
{
    return QString(QLatin1Char(letter));
}

constexpr std::size_t KIND_LETTER_OFFSET = 248;
constexpr std::size_t KIND_LETTER_SIZE = 2;

// A table of the chip's own: the decoder of the library has another, so that a slip in either shows
// when the one reads what the other wrote.
constexpr TextField FIELDS[] = {
    {CN, 0, 30, from<&Card::name>},
    {CN, 30, 2, from<&Card::sex>},
    {CN, 32, 4, from<&Card::ethnicGroup>},
    {CN, 36, 16, from<&Card::birthDate>},
    {CN, 52, 70, from<&Card::address>},
    {CN, 122, 36, from<&Card::idNumber>},
    {CN, 158, 30, from<&Card::issuingAuthority>},
    {CN, 188, 16, from<&Card::validFrom>},
    {CN, 204, 16, from<&Card::validTo>},

    {HMT, 0, 30, from<&Card::name>},
    {HMT, 30, 2, from<&Card::sex>},
    {HMT, 36, 16, from<&Card::birthDate>},
    {HMT, 52, 70, from<&Card::address>},
    {HMT, 122, 36, from<&Card::idNumber>},
    {HMT, 158, 30, from<&Card::issuingAuthority>},
    {HMT, 188, 16, from<&Card::validFrom>},
    {HMT, 204, 16, from<&Card::validTo>},
    {HMT, 220, 18, from<&Card::travelPermitNumber>},
    {HMT, 238, 4, from<&Card::issueCount>},
    {HMT, KIND_LETTER_OFFSET, KIND_LETTER_SIZE, kindLetter<'J'>},

    {F17, 0, 120, from<&Card::englishName>},
    {F17, 120, 2, from<&Card::sex>},
    {F17, 122, 30, from<&Card::idNumber>},
    {F17, 152, 6, from<&Card::nationality>},
    {F17, 158, 30, from<&Card::chineseName>},
    {F17, 188, 16, from<&Card::validFrom>},
    {F17, 204, 16, from<&Card::validTo>},
    {F17, 220, 16, from<&Card::birthDate>},
    {F17, 236, 4, from<&Card::cardVersion>},
    {F17, 240, 8, from<&Card::authorityCode>},
    {F17, KIND_LETTER_OFFSET, KIND_LETTER_SIZE, kindLetter<'I'>},

    {NEW, 0, 30, from<&Card::chineseName>},
    {NEW, 30, 2, from<&Card::sex>},
    {NEW, 32, 4, from<&Card::cardExtra>},
    {NEW, 36, 16, from<&Card::birthDate>},
    {NEW, 52, 70, from<&Card::englishName>},
    {NEW, 122, 36, from<&Card::idNumber>},
    {NEW, 188, 16, from<&Card::validFrom>},
    {NEW, 204, 16, from<&Card::validTo>},
    {NEW, 242, 6, from<&Card::nationality>},
    {NEW, KIND_LETTER_OFFSET, KIND_LETTER_SIZE, kindLetter<'Y'>},
};

void putInto(QByteArray *block, std::size_t offset, std::size_t size, const QString &text)
{
    putText(reinterpret_cast<unsigned char *>(block->data()) + offset, size, text, SPACE);
}

QByteArray deliveredText(const CardDescription &card, const Faults &faults)
{
    QByteArray block = textBlock(card);
    if (faults.has(FaultKind::UNKNOWN_KIND))
        putInto(&block, KIND_LETTER_OFFSET, KIND_LETTER_SIZE, QStringLiteral("?"));
    return block;
}

} // namespace

QByteArray textBlock(const CardDescription &card)
{
    QByteArray block(reader_frames::TEXT_SIZE, '\0');
    putInto(&block, 0, reader_frames::TEXT_SIZE, QString());
    for (const TextField &field : FIELDS) {
        if (field.kind == card.kind)
            putInto(&block, field.offset, field.size, field.text(card));
    }
    return block;
}

QByteArray readAnswer(const CardDescription &card, const Faults &faults)
{
    constexpr int STATUS_SIZE = 3;
    const QByteArray text = deliveredText(card, faults);
    const QByteArray photo =
        faults.has(FaultKind::PHOTO_UNDECODABLE) ? undecodablePhoto(card) : compressedPhoto(card);
    const QByteArray prints = fingerprintTemplates(card);

    QByteArray payload(reinterpret_cast<const char *>(reader_frames::READ_ANSWER_STATUS.data()),
                       STATUS_SIZE);
    payload += reader_frames::frameNumber(text.size());
    payload +=
        reader_frames::frameNumber(faults.number(FaultKind::PHOTO_LENGTH).value_or(photo.size()));
    payload += reader_frames::frameNumber(prints.size());
    payload += text + photo + prints;
    return answerFrame(payload);
}

} // namespace simulator
