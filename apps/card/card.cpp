#include "apps/card/card.h"

#include <algorithm>
#include <array>

#include <QCryptographicHash>
#include <QtEndian>

namespace app
{

namespace
{

/** How a field is called by programs, by people, and how it is written. */
struct FieldTerm {
    const char *key;
    const char *label;
    FieldForm form = FieldForm::TEXT;
};

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

template <typename Record>
struct FieldRow {
    FieldTerm term;
    std::string Record::*text; ///< null: these records do not have the field
    // The rest of a `SplitDate`.
    std::string Record::*month = nullptr;
    std::string Record::*day = nullptr;
};

// The records of both roads name their fields alike, so one table serves both; what only one of
// them has stands in these.
template <typename Record>
constexpr std::string Record::*ISSUE_COUNT = nullptr;
template <>
constexpr std::string HmtTexts::*ISSUE_COUNT<HmtTexts> = &HmtTexts::szIssueCount;

template <typename Record>
constexpr std::string Record::*NATIONALITY_CODE = nullptr;
template <>
constexpr std::string Foreign2017Texts::*NATIONALITY_CODE<Foreign2017Texts> =
    &Foreign2017Texts::szNationalityCode;
template <>
constexpr std::string ForeignNewTexts::*NATIONALITY_CODE<ForeignNewTexts> =
    &ForeignNewTexts::szNationalityCode;

template <typename R>
constexpr std::array<FieldRow<R>, 9> CN_FIELDS = {{
    {NAME, &R::szName},
    {SEX, &R::szSex},
    {ETHNIC_GROUP, &R::szNation},
    {BIRTH_DATE, &R::szBirthYear, &R::szBirthMonth, &R::szBirthDay},
    {ADDRESS, &R::szAddress},
    {IDENTITY_NUMBER, &R::szID},
    {ISSUING_AUTHORITY, &R::szDept},
    {VALID_FROM, &R::szValidStart},
    {VALID_TO, &R::szValidEnd},
}};

template <typename R>
constexpr std::array<FieldRow<R>, 10> HMT_FIELDS = {{
    {NAME, &R::szName},
    {SEX, &R::szSex},
    {BIRTH_DATE, &R::szBirthYear, &R::szBirthMonth, &R::szBirthDay},
    {ADDRESS, &R::szAddress},
    {IDENTITY_NUMBER, &R::szID},
    {TRAVEL_PERMIT_NUMBER, &R::szPassNumber},
    {TIMES_ISSUED, ISSUE_COUNT<R>},
    {ISSUING_AUTHORITY, &R::szDept},
    {VALID_FROM, &R::szValidStart},
    {VALID_TO, &R::szValidEnd},
}};

template <typename R>
constexpr std::array<FieldRow<R>, 9> FOREIGN_2017_FIELDS = {{
    {ENGLISH_NAME, &R::szEnglishName},
    {CHINESE_NAME, &R::szChineseName},
    {SEX, &R::szSex},
    {BIRTH_DATE, &R::szBirthYear, &R::szBirthMonth, &R::szBirthDay},
    {NATIONALITY, &R::szNationality},
    {COUNTRY_CODE, NATIONALITY_CODE<R>},
    {CARD_NUMBER, &R::szID},
    {VALID_FROM, &R::szValidStart},
    {VALID_TO, &R::szValidEnd},
}};

template <typename R>
constexpr std::array<FieldRow<R>, 10> FOREIGN_NEW_FIELDS = {{
    {ENGLISH_NAME, &R::szEnglishName},
    {CHINESE_NAME, &R::szChineseName},
    {SEX, &R::szSex},
    {CARD_EXTRA, &R::szCardExtra},
    {BIRTH_DATE, &R::szBirthYear, &R::szBirthMonth, &R::szBirthDay},
    {NATIONALITY, &R::szNationality},
    {COUNTRY_CODE, NATIONALITY_CODE<R>},
    {CARD_NUMBER, &R::szID},
    {VALID_FROM, &R::szValidStart},
    {VALID_TO, &R::szValidEnd},
}};

/** The fields of `Member`, a record of `Records`, by the rows for its type. */
template <const auto &Rows, typename Records, auto Member>
QVector<CardField> collectFields(const Records &records)
{
    const auto &record = records.*Member;
    QVector<CardField> fields;
    for (const auto &row : Rows) {
        CardField field{row.term.key, row.term.label, row.term.form, {}};
        for (const auto part : {row.text, row.month, row.day}) {
            if (part != nullptr)
                field.content << QString::fromStdString(record.*part);
        }
        fields << field;
    }
    return fields;
}

template <auto Member>
const unsigned char *photoArea(const CardRecords &records)
{
    return (records.*Member).byPhoto;
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
    QVector<CardField> (*fields)(const CardRecords &records);
    QVector<CardField> (*decodedFields)(const CardTexts &texts);
    const unsigned char *(*photo)(const CardRecords &records);
    bool hasFingerprints;
};

namespace
{

template <const auto &Rows, auto Member>
constexpr auto FROM_RECORD = collectFields<Rows, CardRecords, Member>;
template <const auto &Rows, auto Member>
constexpr auto FROM_TEXTS = collectFields<Rows, CardTexts, Member>;

constexpr std::array<CardKind, 4> CARD_KINDS = {{
    {IDCARD_KIND_CN, "resident", QT_TRANSLATE_NOOP("Card", "Resident identity card"),
     FROM_RECORD<CN_FIELDS<_tagIDCARD_INFO_ALL_CN>, &CardRecords::cn>,
     FROM_TEXTS<CN_FIELDS<CnTexts>, &CardTexts::cn>, photoArea<&CardRecords::cn>, true},
    {IDCARD_KIND_FOREIGN_2017, "foreign-2017",
     QT_TRANSLATE_NOOP("Card", "Foreigner's permanent residence card, 2017 edition"),
     FROM_RECORD<FOREIGN_2017_FIELDS<_tagIDCARD_INFO_ALL_FOREIGN_2017>, &CardRecords::foreign2017>,
     FROM_TEXTS<FOREIGN_2017_FIELDS<Foreign2017Texts>, &CardTexts::foreign2017>,
     photoArea<&CardRecords::foreign2017>, false},
    {IDCARD_KIND_FOREIGN_NEW, "foreign-new",
     QT_TRANSLATE_NOOP("Card", "Foreigner's permanent residence card, new edition"),
     FROM_RECORD<FOREIGN_NEW_FIELDS<_tagIDCARD_INFO_ALL_FOREIGN_NEW>, &CardRecords::foreignNew>,
     FROM_TEXTS<FOREIGN_NEW_FIELDS<ForeignNewTexts>, &CardTexts::foreignNew>,
     photoArea<&CardRecords::foreignNew>, false},
    {IDCARD_KIND_HMT, "hmt",
     QT_TRANSLATE_NOOP("Card", "Residence permit for Hong Kong, Macao and Taiwan residents"),
     FROM_RECORD<HMT_FIELDS<_tagIDCARD_INFO_ALL_HMT>, &CardRecords::hmt>,
     FROM_TEXTS<HMT_FIELDS<HmtTexts>, &CardTexts::hmt>, photoArea<&CardRecords::hmt>, false},
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

Card::Card(unsigned int cardKind, const CardRecords &records, CardPictures pictures)
    : m_road(Road::READER_LIBRARY), m_kind(findKind(cardKind))
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
}

Card::Card(Road road, ID_TYPE kind, const CardTexts &texts, CardMedia media)
    : m_road(road), m_kind(findKind(static_cast<unsigned int>(kind))), m_media(std::move(media))
{
    Q_ASSERT(m_kind != nullptr && m_media.photoArea.size() == int(IDCARD_PHOTO_SIZE));
    m_fields = m_kind->decodedFields(texts);
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

PhotoFormat Card::photoFormat() const
{
    return photoFormatOf(reinterpret_cast<const unsigned char *>(m_media.photoArea.constData()));
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
