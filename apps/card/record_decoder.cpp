#include "apps/card/record_decoder.h"

#include "apps/card/raw_record.h"
#include "apps/process/interruption.h"
#include "apps/process/standard_streams.h"
#include "common/country_lookup.h"
#include "iddata/card_layouts.h"
#include "iddata/iddata.h"
#include "iddata/text_values.h"
#include "reader/reader_frames.h"

namespace app
{

namespace
{

/** What separates name and code in the nationality of a card of the new edition. */
constexpr const char *NATIONALITY_SEPARATOR = " / ";

/** The text of a field as the record has it: UCS-2, up to a zero, without the blanks at its end. */
QString wholeText(const unsigned char *block, int offset, int size)
{
    QString text;
    for (int i = offset; i + 1 < offset + size; i += 2) {
        const QChar character(static_cast<ushort>(block[i] | block[i + 1] << 8));
        if (character.isNull())
            break;
        text += character;
    }
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

/** The days of validity as the record has them, without the points that the decoder puts in. */
template <typename Record, int count>
void takeDays(const card_layouts::Layout<Record, count> &layout, const unsigned char *block,
              Record *record)
{
    using card_layouts::Use;
    for (const card_layouts::Field<Record> &field : layout.fields) {
        if (field.use == Use::DATE ||
            (field.use == Use::DATE_OR_LONG_TERM && record->*field.field != text_values::LONG_TERM))
            record->*field.field = wholeText(block, field.offset, field.size).toStdString();
    }
}

/** The text block of a record, decoded into the record of its kind. */
class TextDecoder
{
public:
    TextDecoder(CIdData *decoder, unsigned char *block) : m_decoder(decoder), m_block(block) {}

    /** Whether the decoder came to its end. */
    bool decode(ID_TYPE kind, CardTexts *texts)
    {
        switch (kind) {
        case ID_TYPE_CN:
            m_decoder->parseChinaIdText(m_block, &texts->cn);
            takeDays(card_layouts::CN_LAYOUT, m_block, &texts->cn);
            return true;
        case ID_TYPE_HMT:
            m_decoder->parseHMTIDText(m_block, &texts->hmt);
            takeDays(card_layouts::HMT_LAYOUT, m_block, &texts->hmt);
            return true;
        case ID_TYPE_FOREIGN_2017:
            return decodeForeign(&texts->foreign2017);
        case ID_TYPE_FOREIGN_NEW:
            return decodeForeign(&texts->foreignNew);
        }
        return false;
    }

private:
    bool decodeForeign(Foreign2017Texts *texts)
    {
        m_decoder->parseForeign2017IDText(m_block, texts);
        takeDays<card_layouts::Foreign2017>(card_layouts::FOREIGN_2017_LAYOUT, m_block, texts);
        texts->szNationality = countryName(texts->szNationalityCode);
        return !texts->szSex.empty();
    }

    bool decodeForeign(ForeignNewTexts *texts)
    {
        m_decoder->parseForeignNewIDText(m_block, texts);
        takeDays<card_layouts::ForeignNew>(card_layouts::FOREIGN_NEW_LAYOUT, m_block, texts);
        const std::string separator = NATIONALITY_SEPARATOR;
        const std::string::size_type end = texts->szNationality.find(separator);
        if (end != std::string::npos)
            texts->szNationalityCode = texts->szNationality.substr(end + separator.size());
        texts->szNationality = countryName(texts->szNationalityCode);
        return !texts->szSex.empty();
    }

    CIdData *m_decoder;
    unsigned char *m_block;
};

/** Puts the whole text in the place of each that the decoder cut. */
template <typename Record, int count>
void makeWhole(const card_layouts::Layout<Record, count> &layout, const unsigned char *block,
               Record *record)
{
    for (const card_layouts::Field<Record> &field : layout.fields) {
        if (field.use != card_layouts::Use::TEXT)
            continue;
        const QString whole = wholeText(block, field.offset, field.size);
        const QString kept = QString::fromStdString(record->*field.field);
        if (whole.size() > kept.size() && whole.startsWith(kept))
            record->*field.field = whole.toStdString();
    }
}

CardTexts withWholeTexts(ID_TYPE kind, CardTexts texts, const unsigned char *block)
{
    switch (kind) {
    case ID_TYPE_CN:
        makeWhole(card_layouts::CN_LAYOUT, block, &texts.cn);
        break;
    case ID_TYPE_HMT:
        makeWhole(card_layouts::HMT_LAYOUT, block, &texts.hmt);
        break;
    case ID_TYPE_FOREIGN_2017:
        makeWhole<card_layouts::Foreign2017>(card_layouts::FOREIGN_2017_LAYOUT, block,
                                             &texts.foreign2017);
        break;
    case ID_TYPE_FOREIGN_NEW:
        makeWhole<card_layouts::ForeignNew>(card_layouts::FOREIGN_NEW_LAYOUT, block,
                                            &texts.foreignNew);
        break;
    }
    return texts;
}

bool isBmp(const QByteArray &area)
{
    return photoFormatOf(reinterpret_cast<const unsigned char *>(area.constData())) ==
           PhotoFormat::BMP;
}

/** The photo as a BMP file; else as the card stores it, followed by zeros. */
QByteArray photoAreaOf(CIdData *decoder, unsigned char *block)
{
    QByteArray area(int(IDCARD_PHOTO_SIZE), '\0');
    const ReadInProgress reading; // the maker's decoder may hang as the reader's library may
    decoder->parseIDHeadImage(block, reinterpret_cast<unsigned char *>(area.data()));
    if (photoFormatOf(reinterpret_cast<const unsigned char *>(area.constData())) ==
        PhotoFormat::NONE) {
        area.replace(0, reader_frames::PHOTO_SIZE, reinterpret_cast<const char *>(block),
                     reader_frames::PHOTO_SIZE);
    }
    return area;
}

} // namespace

std::optional<Card> decodeRawRecord(QByteArray record, FP_INFO_TYPE prints, Road road)
{
    const HiddenLog hidden;
    const bool isOdd = !checkRawRecord(record).warnings.isEmpty();
    CIdData decoder(record, prints);
    auto *const bytes = reinterpret_cast<unsigned char *>(record.data());
    unsigned char *const block = bytes + reader_frames::TEXT_OFFSET;

    ID_TYPE kind = ID_TYPE_CN;
    CardTexts texts;
    if (!decoder.parseIDType(block, &kind) || !TextDecoder(&decoder, block).decode(kind, &texts))
        return std::nullopt;

    CardMedia media;
    media.photoArea = photoAreaOf(&decoder, bytes + reader_frames::PHOTO_OFFSET);
    media.fingerprintCount = printCount(prints);
    const int count = media.fingerprintCount.value_or(0);
    if (count > 0)
        media.fingerprints =
            record.mid(reader_frames::PRINTS_OFFSET, count * reader_frames::PRINT_SIZE);
    Card card(road, kind, texts, std::move(media));
    card.setWholeTexts(withWholeTexts(kind, texts, block));
    card.setOddRecord(isOdd);
    return card;
}

void decodePhoto(Card *card)
{
    QByteArray compressed = card->compressedPhoto();
    if (compressed.isNull())
        return;
    const HiddenLog hidden;
    QByteArray noRecord;
    CIdData decoder(noRecord, FP_INFO_NONE);
    QByteArray area(int(IDCARD_PHOTO_SIZE), '\0');
    const ReadInProgress reading;
    decoder.parseIDHeadImage(reinterpret_cast<unsigned char *>(compressed.data()),
                             reinterpret_cast<unsigned char *>(area.data()));
    if (isBmp(area))
        card->setPhoto(area);
}

} // namespace app
