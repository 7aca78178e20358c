#include "apps/card/card.h"

#include <algorithm>
#include <array>
#include <iterator>

#include <QCryptographicHash>
#include <QtEndian>

namespace app
{

namespace
{

constexpr FieldTerm NAME = {"name", QT_TRANSLATE_NOOP("Card", "Name")};
constexpr FieldTerm ENGLISH_NAME = {"englishName", QT_TRANSLATE_NOOP("Card", "Name")};
constexpr FieldTerm CHINESE_NAME = {"chineseName", QT_TRANSLATE_NOOP("Card", "Chinese name")};
constexpr FieldTerm SEX = {"sex", QT_TRANSLATE_NOOP("Card", "Sex")};
constexpr FieldTerm CARD_EXTRA = {"cardExtra", QT_TRANSLATE_NOOP("Card", "Extra item")};
constexpr FieldTerm ETHNIC_GROUP = {"ethnicGroup", QT_TRANSLATE_NOOP("Card", "Ethnic group")};
constexpr FieldTerm BIRTH_DATE = {"birthDate", QT_TRANSLATE_NOOP("Card", "Date of birth"),
                                  FieldForm::SPLIT_DATE};
constexpr FieldTerm NATIONALITY = {"nationality", QT_TRANSLATE_NOOP("Card", "Nationality")};
constexpr FieldTerm COUNTRY_CODE = {"nationalityCode", QT_TRANSLATE_NOOP("Card", "Country code")};
constexpr FieldTerm ADDRESS = {"address", QT_TRANSLATE_NOOP("Card", "Address")};
constexpr FieldTerm IDENTITY_NUMBER = {"idNumber", QT_TRANSLATE_NOOP("Card", "Identity number")};
constexpr FieldTerm CARD_NUMBER = {"idNumber", QT_TRANSLATE_NOOP("Card", "Card number")};
constexpr FieldTerm TRAVEL_PERMIT_NUMBER = {"travelPermitNumber",
                                            QT_TRANSLATE_NOOP("Card", "Travel permit number")};
constexpr FieldTerm TIMES_ISSUED = {"issueCount", QT_TRANSLATE_NOOP("Card", "Times issued")};
constexpr FieldTerm ISSUING_AUTHORITY = {"issuingAuthority",
                                         QT_TRANSLATE_NOOP("Card", "Issuing authority")};
constexpr FieldTerm VALID_FROM = {"validFrom", QT_TRANSLATE_NOOP("Card", "Valid from"),
                                  FieldForm::DATE};
constexpr FieldTerm VALID_TO = {"validTo", QT_TRANSLATE_NOOP("Card", "Valid to"), FieldForm::DATE};

CardField field(const FieldTerm &term, const std::string &content)
{
    return {term, {QString::fromStdString(content)}};
}

/** A field that a raw record alone delivers: `content` is null on the other road. */
CardField rawField(const FieldTerm &term, const std::string *content)
{
    return content == nullptr ? CardField{term, {}} : field(term, *content);
}

// The records of both roads name their fields alike, so one list of a kind serves both.

template <typename Record>
CardField birthDate(const Record &card)
{
    return {BIRTH_DATE,
            {QString::fromStdString(card.szBirthYear), QString::fromStdString(card.szBirthMonth),
             QString::fromStdString(card.szBirthDay)}};
}

template <typename Record>
QVector<CardField> residentFields(const Record &card)
{
    return {
        field(NAME, card.szName),
        field(SEX, card.szSex),
        field(ETHNIC_GROUP, card.szNation),
        birthDate(card),
        field(ADDRESS, card.szAddress),
        field(IDENTITY_NUMBER, card.szID),
        field(ISSUING_AUTHORITY, card.szDept),
        field(VALID_FROM, card.szValidStart),
        field(VALID_TO, card.szValidEnd),
    };
}

template <typename Record>
QVector<CardField> hmtFields(const Record &card, const std::string *issueCount)
{
    return {
        field(NAME, card.szName),
        field(SEX, card.szSex),
        birthDate(card),
        field(ADDRESS, card.szAddress),
        field(IDENTITY_NUMBER, card.szID),
        field(TRAVEL_PERMIT_NUMBER, card.szPassNumber),
        rawField(TIMES_ISSUED, issueCount),
        field(ISSUING_AUTHORITY, card.szDept),
        field(VALID_FROM, card.szValidStart),
        field(VALID_TO, card.szValidEnd),
    };
}

template <typename Record>
QVector<CardField> foreign2017Fields(const Record &card, const std::string *countryCode)
{
    return {
        field(ENGLISH_NAME, card.szEnglishName),
        field(CHINESE_NAME, card.szChineseName),
        field(SEX, card.szSex),
        birthDate(card),
        field(NATIONALITY, card.szNationality),
        rawField(COUNTRY_CODE, countryCode),
        field(CARD_NUMBER, card.szID),
        field(VALID_FROM, card.szValidStart),
        field(VALID_TO, card.szValidEnd),
    };
}

template <typename Record>
QVector<CardField> foreignNewFields(const Record &card, const std::string *countryCode)
{
    constexpr int AFTER_SEX = 3;
    QVector<CardField> fields = foreign2017Fields(card, countryCode);
    fields.insert(AFTER_SEX, field(CARD_EXTRA, card.szCardExtra));
    return fields;
}

QByteArray bytesOf(const unsigned char *data, unsigned int size)
{
    return {reinterpret_cast<const char *>(data), static_cast<int>(size)};
}

bool isZero(const unsigned char *first, const unsigned char *last)
{
    return std::all_of(first, last, [](unsigned char byte) { return byte == 0; });
}

bool isPhotoBmp(const unsigned char *photoArea)
{
    // Offsets in a BMP file; all numbers are little-endian.
    constexpr int FILE_SIZE = 2;
    constexpr int WIDTH = 18;
    constexpr int HEIGHT = 22; // negative when the rows run from top to bottom
    constexpr int BITS_PER_PIXEL = 28;
    const auto height = qFromLittleEndian<qint32>(photoArea + HEIGHT);
    return photoArea[0] == 'B' && photoArea[1] == 'M' &&
           qFromLittleEndian<quint32>(photoArea + FILE_SIZE) == IDCARD_PHOTO_SIZE &&
           qFromLittleEndian<qint32>(photoArea + WIDTH) == 102 &&
           (height == 126 || height == -126) &&
           qFromLittleEndian<quint16>(photoArea + BITS_PER_PIXEL) == 24;
}

// What the tool presets `fpInfoType` to: the library leaves it alone when the reader delivers an
// unusual amount of fingerprint data.
constexpr auto FP_INFO_UNKNOWN = static_cast<FP_INFO_TYPE>(-1);

} // namespace

struct CardKind {
    IDCARD_KIND code;
    const char *key;
    const char *label;
    bool hasFingerprints;
    QVector<CardField> (*fields)(const CardRecords &records);
    QVector<CardField> (*decodedFields)(const CardTexts &texts);
    const unsigned char *(*photo)(const CardRecords &records);
};

namespace
{

PhotoFormat formatOfArea(const CardMedia &media)
{
    return photoFormatOf(reinterpret_cast<const unsigned char *>(media.photoArea.constData()));
}

constexpr std::array<CardKind, 4> CARD_KINDS = {{
    {IDCARD_KIND_CN, "resident", QT_TRANSLATE_NOOP("Card", "Resident identity card"), true,
     [](const CardRecords &all) { return residentFields(all.cn); },
     [](const CardTexts &all) { return residentFields(all.cn); },
     [](const CardRecords &all) { return &all.cn.byPhoto[0]; }},
    {IDCARD_KIND_FOREIGN_2017, "foreign-2017",
     QT_TRANSLATE_NOOP("Card", "Foreigner's permanent residence card, 2017 edition"), false,
     [](const CardRecords &all) { return foreign2017Fields(all.foreign2017, nullptr); },
     [](const CardTexts &all) {
         return foreign2017Fields(all.foreign2017, &all.foreign2017.szNationalityCode);
     },
     [](const CardRecords &all) { return &all.foreign2017.byPhoto[0]; }},
    {IDCARD_KIND_FOREIGN_NEW, "foreign-new",
     QT_TRANSLATE_NOOP("Card", "Foreigner's permanent residence card, new edition"), false,
     [](const CardRecords &all) { return foreignNewFields(all.foreignNew, nullptr); },
     [](const CardTexts &all) {
         return foreignNewFields(all.foreignNew, &all.foreignNew.szNationalityCode);
     },
     [](const CardRecords &all) { return &all.foreignNew.byPhoto[0]; }},
    {IDCARD_KIND_HMT, "hmt",
     QT_TRANSLATE_NOOP("Card", "Residence permit for Hong Kong, Macao and Taiwan residents"), false,
     [](const CardRecords &all) { return hmtFields(all.hmt, nullptr); },
     [](const CardTexts &all) { return hmtFields(all.hmt, &all.hmt.szIssueCount); },
     [](const CardRecords &all) { return &all.hmt.byPhoto[0]; }},
}};

static_assert(int(ID_TYPE_CN) == int(IDCARD_KIND_CN) &&
              int(ID_TYPE_FOREIGN_2017) == int(IDCARD_KIND_FOREIGN_2017) &&
              int(ID_TYPE_FOREIGN_NEW) == int(IDCARD_KIND_FOREIGN_NEW) &&
              int(ID_TYPE_HMT) == int(IDCARD_KIND_HMT));

const CardKind *findKind(unsigned int cardKind)
{
    const auto *const found =
        std::find_if(CARD_KINDS.begin(), CARD_KINDS.end(),
                     [&](const CardKind &kind) { return kind.code == cardKind; });
    return found == CARD_KINDS.end() ? nullptr : found;
}

} // namespace

std::optional<int> printCount(FP_INFO_TYPE type)
{
    switch (type) {
    case FP_INFO_TWO:
        return 2;
    case FP_INFO_ONE:
        return 1;
    case FP_INFO_NONE:
        return 0;
    }
    return std::nullopt;
}

CardRecords::CardRecords()
{
    cn.fpInfoType = FP_INFO_UNKNOWN;
}

PhotoFormat photoFormatOf(const unsigned char *photoArea)
{
    const unsigned char *const afterCompressed = photoArea + IDCARD_COMPRESSED_PHOTO_SIZE;
    const unsigned char *const end = photoArea + IDCARD_PHOTO_SIZE;
    if (isPhotoBmp(photoArea))
        return PhotoFormat::BMP;
    if (!isZero(afterCompressed, end))
        return PhotoFormat::UNKNOWN;
    return isZero(photoArea, afterCompressed) ? PhotoFormat::NONE : PhotoFormat::COMPRESSED;
}

bool isCardKind(unsigned int cardKind)
{
    return findKind(cardKind) != nullptr;
}

std::optional<unsigned int> kindCodeOf(const QString &key)
{
    const auto *const found =
        std::find_if(CARD_KINDS.begin(), CARD_KINDS.end(),
                     [&](const CardKind &kind) { return QLatin1String(kind.key) == key; });
    return found == CARD_KINDS.end() ? std::optional<unsigned int>() : found->code;
}

QVector<CardField> fieldsOfKind(unsigned int cardKind)
{
    QVector<CardField> fields = findKind(cardKind)->decodedFields({});
    for (CardField &field : fields)
        field.content.clear();
    return fields;
}

Card::Card(unsigned int cardKind, const CardRecords &records, CardPictures pictures)
    : m_road(Road::READER_LIBRARY), m_kind(findKind(cardKind)), m_photoFormat(PhotoFormat::NONE)
{
    Q_ASSERT(m_kind != nullptr);
    m_fields = m_kind->fields(records);
    m_media.photoArea = bytesOf(m_kind->photo(records), IDCARD_PHOTO_SIZE);
    m_media.fingerprintCount =
        m_kind->hasFingerprints ? printCount(records.cn.fpInfoType) : std::optional<int>(0);
    const int count = m_media.fingerprintCount.value_or(0);
    if (count > 0)
        m_media.fingerprints = bytesOf(records.cn.byFpData,
                                       static_cast<unsigned int>(count) * IDCARD_FINGERPRINT_SIZE);
    m_media.pictures = std::move(pictures);
    m_photoFormat = formatOfArea(m_media);
}

Card::Card(Road road, ID_TYPE kind, const CardTexts &texts, CardMedia media)
    : m_road(road), m_kind(findKind(static_cast<unsigned int>(kind))), m_media(std::move(media)),
      m_photoFormat(formatOfArea(m_media))
{
    Q_ASSERT(m_kind != nullptr && m_media.photoArea.size() == int(IDCARD_PHOTO_SIZE));
    m_fields = m_kind->decodedFields(texts);
}

Card::Card(Road road, unsigned int cardKind, const FieldContents &fields,
           const FieldContents &whole, PhotoFormat photoFormat, CardMedia media)
    : m_road(road), m_kind(findKind(cardKind)), m_fields(fieldsOfKind(cardKind)),
      m_media(std::move(media)), m_photoFormat(photoFormat)
{
    for (CardField &field : m_fields) {
        const QString key = QLatin1String(field.key);
        field.content = whole.value(key);
        if (whole.contains(key))
            m_cutFields << field;
        field.content = fields.value(key);
    }
}

void Card::setWholeTexts(const CardTexts &texts)
{
    const QVector<CardField> whole = m_kind->decodedFields(texts);
    m_cutFields.clear();
    std::copy_if(whole.begin(), whole.end(), std::back_inserter(m_cutFields),
                 [&, cut = m_fields.begin()](const CardField &field) mutable {
                     return field.content != (cut++)->content;
                 });
}

unsigned int Card::kindCode() const
{
    return m_kind->code;
}

const char *Card::kindKey() const
{
    return m_kind->key;
}

const char *Card::kindLabel() const
{
    return m_kind->label;
}

QByteArray Card::photo() const
{
    return photoFormat() == PhotoFormat::BMP ? m_media.photoArea : QByteArray();
}

QByteArray Card::compressedPhoto() const
{
    return photoFormat() == PhotoFormat::COMPRESSED
               ? m_media.photoArea.left(int(IDCARD_COMPRESSED_PHOTO_SIZE))
               : QByteArray();
}

void Card::setPhoto(const QByteArray &bmpFile)
{
    Q_ASSERT(bmpFile.size() == int(IDCARD_PHOTO_SIZE));
    m_media.photoArea = bmpFile;
    m_photoFormat = formatOfArea(m_media);
}

bool Card::mayHaveFingerprints() const
{
    return m_kind->hasFingerprints || !m_media.fingerprints.isNull();
}

QByteArray Card::picture(CardSide side) const
{
    return side == CardSide::FRONT ? m_media.pictures.front : m_media.pictures.back;
}

QByteArray Card::digest() const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(kindKey());
    for (const CardField &field : fields()) {
        for (const QString &text : field.content) {
            const QByteArray utf8 = text.toUtf8();
            hash.addData(utf8.constData(), utf8.size() + 1); // the end keeps neighbours apart
        }
    }
    hash.addData(m_media.photoArea);
    hash.addData(m_media.fingerprints);
    return hash.result();
}

} // namespace app
