#include "apps/card.h"

#include <algorithm>
#include <array>

#include <QCryptographicHash>
#include <QtEndian>

namespace app
{

namespace
{

template <typename Record>
struct FieldRow {
    const char *key;
    const char *label;
    FieldForm form;
    std::string Record::*text;
    // The rest of a `SplitDate`.
    std::string Record::*month = nullptr;
    std::string Record::*day = nullptr;
};

using Cn = _tagIDCARD_INFO_ALL_CN;
constexpr std::array<FieldRow<Cn>, 9> CN_FIELDS = {{
    {"name", "Name", FieldForm::Text, &Cn::szName},
    {"sex", "Sex", FieldForm::Text, &Cn::szSex},
    {"ethnicGroup", "Ethnic group", FieldForm::Text, &Cn::szNation},
    {"birthDate", "Date of birth", FieldForm::SplitDate, &Cn::szBirthYear, &Cn::szBirthMonth,
     &Cn::szBirthDay},
    {"address", "Address", FieldForm::Text, &Cn::szAddress},
    {"idNumber", "Identity number", FieldForm::Text, &Cn::szID},
    {"issuingAuthority", "Issuing authority", FieldForm::Text, &Cn::szDept},
    {"validFrom", "Valid from", FieldForm::Date, &Cn::szValidStart},
    {"validTo", "Valid to", FieldForm::Date, &Cn::szValidEnd},
}};

using Hmt = _tagIDCARD_INFO_ALL_HMT;
constexpr std::array<FieldRow<Hmt>, 9> HMT_FIELDS = {{
    {"name", "Name", FieldForm::Text, &Hmt::szName},
    {"sex", "Sex", FieldForm::Text, &Hmt::szSex},
    {"birthDate", "Date of birth", FieldForm::SplitDate, &Hmt::szBirthYear, &Hmt::szBirthMonth,
     &Hmt::szBirthDay},
    {"address", "Address", FieldForm::Text, &Hmt::szAddress},
    {"idNumber", "Identity number", FieldForm::Text, &Hmt::szID},
    {"travelPermitNumber", "Travel permit number", FieldForm::Text, &Hmt::szPassNumber},
    {"issuingAuthority", "Issuing authority", FieldForm::Text, &Hmt::szDept},
    {"validFrom", "Valid from", FieldForm::Date, &Hmt::szValidStart},
    {"validTo", "Valid to", FieldForm::Date, &Hmt::szValidEnd},
}};

using Foreign2017 = _tagIDCARD_INFO_ALL_FOREIGN_2017;
constexpr std::array<FieldRow<Foreign2017>, 8> FOREIGN_2017_FIELDS = {{
    {"englishName", "Name", FieldForm::Text, &Foreign2017::szEnglishName},
    {"chineseName", "Chinese name", FieldForm::Text, &Foreign2017::szChineseName},
    {"sex", "Sex", FieldForm::Text, &Foreign2017::szSex},
    {"birthDate", "Date of birth", FieldForm::SplitDate, &Foreign2017::szBirthYear,
     &Foreign2017::szBirthMonth, &Foreign2017::szBirthDay},
    {"nationality", "Nationality", FieldForm::Text, &Foreign2017::szNationality},
    {"idNumber", "Card number", FieldForm::Text, &Foreign2017::szID},
    {"validFrom", "Valid from", FieldForm::Date, &Foreign2017::szValidStart},
    {"validTo", "Valid to", FieldForm::Date, &Foreign2017::szValidEnd},
}};

using ForeignNew = _tagIDCARD_INFO_ALL_FOREIGN_NEW;
constexpr std::array<FieldRow<ForeignNew>, 9> FOREIGN_NEW_FIELDS = {{
    {"englishName", "Name", FieldForm::Text, &ForeignNew::szEnglishName},
    {"chineseName", "Chinese name", FieldForm::Text, &ForeignNew::szChineseName},
    {"sex", "Sex", FieldForm::Text, &ForeignNew::szSex},
    {"cardExtra", "Extra item", FieldForm::Text, &ForeignNew::szCardExtra},
    {"birthDate", "Date of birth", FieldForm::SplitDate, &ForeignNew::szBirthYear,
     &ForeignNew::szBirthMonth, &ForeignNew::szBirthDay},
    {"nationality", "Nationality", FieldForm::Text, &ForeignNew::szNationality},
    {"idNumber", "Card number", FieldForm::Text, &ForeignNew::szID},
    {"validFrom", "Valid from", FieldForm::Date, &ForeignNew::szValidStart},
    {"validTo", "Valid to", FieldForm::Date, &ForeignNew::szValidEnd},
}};

template <const auto &Rows, auto Member>
QVector<CardField> collectFields(const CardRecords &records)
{
    const auto &record = records.*Member;
    QVector<CardField> fields;
    for (const auto &row : Rows) {
        CardField field{row.key, row.label, row.form, {}};
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
    const unsigned char *(*photo)(const CardRecords &records);
    bool hasFingerprints;
};

namespace
{

constexpr std::array<CardKind, 4> CARD_KINDS = {{
    {IDCARD_KIND_CN, "resident", "Resident identity card",
     collectFields<CN_FIELDS, &CardRecords::cn>, photoArea<&CardRecords::cn>, true},
    {IDCARD_KIND_FOREIGN_2017, "foreign-2017", "Foreigner's permanent residence card, 2017 edition",
     collectFields<FOREIGN_2017_FIELDS, &CardRecords::foreign2017>,
     photoArea<&CardRecords::foreign2017>, false},
    {IDCARD_KIND_FOREIGN_NEW, "foreign-new", "Foreigner's permanent residence card, new edition",
     collectFields<FOREIGN_NEW_FIELDS, &CardRecords::foreignNew>,
     photoArea<&CardRecords::foreignNew>, false},
    {IDCARD_KIND_HMT, "hmt", "Residence permit for Hong Kong, Macao and Taiwan residents",
     collectFields<HMT_FIELDS, &CardRecords::hmt>, photoArea<&CardRecords::hmt>, false},
}};

const CardKind *findKind(unsigned int cardKind)
{
    const auto *const found =
        std::find_if(CARD_KINDS.begin(), CARD_KINDS.end(),
                     [&](const CardKind &kind) { return kind.code == cardKind; });
    return found == CARD_KINDS.end() ? nullptr : found;
}

} // namespace

CardRecords::CardRecords()
{
    cn.fpInfoType = FP_INFO_UNKNOWN;
}

PhotoFormat photoFormatOf(const unsigned char *photoArea)
{
    const unsigned char *const afterCompressed = photoArea + IDCARD_COMPRESSED_PHOTO_SIZE;
    const unsigned char *const end = photoArea + IDCARD_PHOTO_SIZE;
    if (isPhotoBmp(photoArea))
        return PhotoFormat::Bmp;
    if (!isZero(afterCompressed, end))
        return PhotoFormat::Unknown;
    return isZero(photoArea, afterCompressed) ? PhotoFormat::None : PhotoFormat::Compressed;
}

bool isCardKind(unsigned int cardKind)
{
    return findKind(cardKind) != nullptr;
}

Card::Card(unsigned int cardKind, std::unique_ptr<CardRecords> records, CardPictures pictures)
    : m_kind(findKind(cardKind)), m_records(std::move(records)), m_pictures(std::move(pictures))
{
    Q_ASSERT(m_kind != nullptr && m_records != nullptr);
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

QVector<CardField> Card::fields() const
{
    return m_kind->fields(*m_records);
}

PhotoFormat Card::photoFormat() const
{
    return photoFormatOf(m_kind->photo(*m_records));
}

QByteArray Card::photo() const
{
    if (photoFormat() != PhotoFormat::Bmp)
        return {};
    return bytesOf(m_kind->photo(*m_records), IDCARD_PHOTO_SIZE);
}

bool Card::mayHaveFingerprints() const
{
    return m_kind->hasFingerprints;
}

std::optional<int> Card::fingerprintCount() const
{
    if (!mayHaveFingerprints())
        return 0;
    switch (m_records->cn.fpInfoType) {
    case FP_INFO_TWO:
        return 2;
    case FP_INFO_ONE:
        return 1;
    case FP_INFO_NONE:
        return 0;
    }
    return std::nullopt;
}

QByteArray Card::fingerprints() const
{
    const int count = fingerprintCount().value_or(0);
    if (count == 0)
        return {};
    return bytesOf(m_records->cn.byFpData,
                   static_cast<unsigned int>(count) * IDCARD_FINGERPRINT_SIZE);
}

QByteArray Card::picture(CardSide side) const
{
    return side == CardSide::Front ? m_pictures.front : m_pictures.back;
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
    hash.addData(bytesOf(m_kind->photo(*m_records), IDCARD_PHOTO_SIZE));
    hash.addData(fingerprints());
    return hash.result();
}

} // namespace app
