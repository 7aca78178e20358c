#include "api/field_extraction.h"

#include <cstddef>
#include <string>

#include <QString>

#include "common/common.h"
#include "common/country_lookup.h"

namespace
{

enum class Conversion {
    TEXT,       ///< as the card has it, up to its first zero character
    TRIMMED,    ///< without padding
    COUNTRY,    ///< the country's Chinese name for its three-letter code
    BIRTH_DATE, ///< split into year, month and day
};

/** Where one field of an output record comes from. */
template <typename Record>
struct FieldSource {
    std::string Record::*field; ///< null for the date of birth, which goes to three fields
    std::size_t offset;         ///< bytes from the start of `CardInfoStruct`
    std::size_t size;           ///< bytes
    Conversion conversion;
};

// NOLINTBEGIN(bugprone-macro-parentheses): a member's name cannot be in parentheses
// Offset and size of a member of `CardInfoStruct`.
#define SOURCE(member) offsetof(CardInfoStruct, member), sizeof(CardInfoStruct::member)
// The same for a member inside a kind's block.
#define BLOCK_SOURCE(block, member)                                                                \
    offsetof(CardInfoStruct, block.member), sizeof(CardInfoStruct{}.block.member)

using Cn = _tagIDCARD_INFO_ALL_CN;
using Hmt = _tagIDCARD_INFO_ALL_HMT;
using Foreign2017 = _tagIDCARD_INFO_ALL_FOREIGN_2017;
using ForeignNew = _tagIDCARD_INFO_ALL_FOREIGN_NEW;

constexpr FieldSource<Cn> CN_FIELDS[] = {
    {&Cn::szName, BLOCK_SOURCE(cn, name), Conversion::TEXT},
    {&Cn::szSex, BLOCK_SOURCE(cn, sex), Conversion::TEXT},
    {&Cn::szNation, BLOCK_SOURCE(cn, nation), Conversion::TEXT},
    {&Cn::szID, BLOCK_SOURCE(cn, id), Conversion::TEXT},
    {&Cn::szAddress, BLOCK_SOURCE(cn, address), Conversion::TEXT},
    {&Cn::szValidStart, BLOCK_SOURCE(cn, validStart), Conversion::TEXT},
    {&Cn::szValidEnd, BLOCK_SOURCE(cn, validEnd), Conversion::TEXT},
    {&Cn::szDept, BLOCK_SOURCE(cn, dept), Conversion::TEXT},
    {nullptr, BLOCK_SOURCE(cn, birthDate), Conversion::BIRTH_DATE},
};

constexpr FieldSource<Hmt> HMT_FIELDS[] = {
    {&Hmt::szName, BLOCK_SOURCE(hmt, name), Conversion::TEXT},
    {&Hmt::szSex, BLOCK_SOURCE(hmt, sex), Conversion::TEXT},
    {&Hmt::szID, BLOCK_SOURCE(hmt, id), Conversion::TEXT},
    {&Hmt::szAddress, BLOCK_SOURCE(hmt, address), Conversion::TEXT},
    {&Hmt::szValidStart, BLOCK_SOURCE(hmt, validStart), Conversion::TEXT},
    {&Hmt::szValidEnd, BLOCK_SOURCE(hmt, validEnd), Conversion::TEXT},
    {nullptr, BLOCK_SOURCE(hmt, birthDate), Conversion::BIRTH_DATE},
    {&Hmt::szPassNumber, BLOCK_SOURCE(hmt, passNumber), Conversion::TEXT},
    {&Hmt::szDept, BLOCK_SOURCE(hmt, dept), Conversion::TEXT},
};

constexpr FieldSource<Foreign2017> FOREIGN_2017_FIELDS[] = {
    {&Foreign2017::szEnglishName, BLOCK_SOURCE(foreign2017, englishName), Conversion::TEXT},
    {&Foreign2017::szSex, BLOCK_SOURCE(foreign2017, sex), Conversion::TEXT},
    {&Foreign2017::szID, BLOCK_SOURCE(foreign2017, id), Conversion::TEXT},
    {&Foreign2017::szNationality, SOURCE(nationality), Conversion::COUNTRY},
    {&Foreign2017::szChineseName, BLOCK_SOURCE(foreign2017, chineseName), Conversion::TEXT},
    {&Foreign2017::szValidStart, BLOCK_SOURCE(foreign2017, validStart), Conversion::TEXT},
    {&Foreign2017::szValidEnd, BLOCK_SOURCE(foreign2017, validEnd), Conversion::TEXT},
    {nullptr, BLOCK_SOURCE(foreign2017, birthDate), Conversion::BIRTH_DATE},
};

// The sex of this kind is trimmed and that of the others is not: on purpose, hosts rely on it.
constexpr FieldSource<ForeignNew> FOREIGN_NEW_FIELDS[] = {
    {&ForeignNew::szChineseName, BLOCK_SOURCE(foreignNew, chineseName), Conversion::TEXT},
    {&ForeignNew::szSex, BLOCK_SOURCE(foreignNew, sex), Conversion::TRIMMED},
    {&ForeignNew::szID, BLOCK_SOURCE(foreignNew, id), Conversion::TEXT},
    {&ForeignNew::szNationality, SOURCE(nationality), Conversion::COUNTRY},
    {&ForeignNew::szEnglishName, BLOCK_SOURCE(foreignNew, englishName), Conversion::TEXT},
    {&ForeignNew::szValidStart, BLOCK_SOURCE(foreignNew, validStart), Conversion::TEXT},
    {&ForeignNew::szValidEnd, BLOCK_SOURCE(foreignNew, validEnd), Conversion::TEXT},
    {nullptr, BLOCK_SOURCE(foreignNew, birthDate), Conversion::BIRTH_DATE},
    {&ForeignNew::szCardExtra, BLOCK_SOURCE(foreignNew, extra), Conversion::TEXT},
};

#undef BLOCK_SOURCE
#undef SOURCE
// NOLINTEND(bugprone-macro-parentheses)

/** `text`, as `conversion` needs it; the date of birth is not a single text. */
std::string converted(std::string text, Conversion conversion)
{
    switch (conversion) {
    case Conversion::TRIMMED:
        return CCommon::trim(text);
    case Conversion::COUNTRY:
        return countryName(text);
    case Conversion::TEXT:
    case Conversion::BIRTH_DATE:
        break;
    }
    return text;
}

template <typename Record>
void setBirthDate(Record &record, const std::string &date)
{
    const QString text = QString::fromUtf8(date.c_str());
    record.szBirthYear = text.mid(0, 4).toStdString();
    record.szBirthMonth = text.mid(4, 2).toStdString();
    record.szBirthDay = text.mid(6, -1).toStdString();
}

template <typename Record, std::size_t count>
void extract(CardInfoStruct &info, Record &record, const FieldSource<Record> (&sources)[count])
{
    auto *const bytes = reinterpret_cast<unsigned char *>(&info);
    for (const FieldSource<Record> &source : sources) {
        std::string text = CCommon::unicode2Utf8Str(bytes + source.offset, source.size);
        if (source.conversion == Conversion::BIRTH_DATE)
            setBirthDate(record, text);
        else
            record.*source.field = converted(std::move(text), source.conversion);
    }
}

} // namespace

void extractFields(CardInfoStruct &info, Cn &record)
{
    extract(info, record, CN_FIELDS);
}

void extractFields(CardInfoStruct &info, Hmt &record)
{
    extract(info, record, HMT_FIELDS);
}

void extractFields(CardInfoStruct &info, Foreign2017 &record)
{
    extract(info, record, FOREIGN_2017_FIELDS);
}

void extractFields(CardInfoStruct &info, ForeignNew &record)
{
    extract(info, record, FOREIGN_NEW_FIELDS);
}
