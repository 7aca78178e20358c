// The four text decoders: one method that walks the table of the kind.

#include "iddata/iddata.h"

#include <array>
#include <cstring>
#include <optional>
#include <string>

#include "common/debug_log.h"
#include "iddata/card_layouts.h"
#include "iddata/text_values.h"

namespace
{

using card_layouts::Assignment;
using card_layouts::Field;
using card_layouts::Layout;
using card_layouts::Use;

template <typename Record>
std::string decodedText(CIdData &decoder, unsigned char *byData, const Field<Record> &field)
{
    std::array<char, card_layouts::MAX_CAPACITY> text{};
    decoder.DecodeIDBase(byData, field.offset, field.size, text.data(), field.capacity);
    // Text that fills its capacity has no terminator.
    return {text.data(), strnlen(text.data(), static_cast<std::size_t>(field.capacity))};
}

void logLine(const char *beginning, const std::string &text)
{
    if (beginning != nullptr)
        debugLine("%s%s", beginning, text.c_str());
}

/** The label of a sex code, logged after `line`; nothing, and a line, when there is none. */
std::optional<std::string> sexLabelOf(CIdData &decoder, const std::string &code, const char *line)
{
    QString label;
    if (!decoder.parseGender(QString::fromLatin1(code.c_str()), label)) {
        debugLine("gender parse fail!");
        return std::nullopt;
    }
    if (line != nullptr)
        debugLine("%s \"%s\"", line, label.toUtf8().constData());
    return label.toStdString();
}

std::string countryAndCode(CIdData &decoder, const std::string &code)
{
    QString name;
    decoder.parseNationality(QString::fromLatin1(code.c_str()), name);
    return name.toStdString() + " / " + code;
}

/** What a field's `text` is in the record; nothing ends the decoding. */
std::optional<std::string> valueOf(CIdData &decoder, Use use, const std::string &text,
                                   const card_layouts::LogLines &log)
{
    switch (use) {
    case Use::MALE_OR_FEMALE:
        return text_values::number(text) == 1 ? "男" : "女";
    case Use::SEX_LABEL:
        return sexLabelOf(decoder, text, log.label);
    case Use::ETHNIC_GROUP:
        return decoder.GetNation(static_cast<unsigned short>(text_values::number(text)));
    case Use::DATE:
        return text_values::dottedDate(text);
    case Use::DATE_OR_LONG_TERM:
        return text_values::dottedDateOrLongTerm(text);
    case Use::COUNTRY:
        return countryAndCode(decoder, text);
    // not reached by fuzzing: its field belongs to no member, and is left before
    case Use::DROPPED:
    case Use::TEXT:
    case Use::BIRTH_DATE:
        break;
    }
    return text;
}

/** Stores the converted `text` in the record; false when decoding ends here. */
template <typename Record>
bool assign(CIdData &decoder, const Field<Record> &field, const std::string &text, Record &record)
{
    if (field.use == Use::BIRTH_DATE) {
        text_values::Date date = text_values::splitDate(text);
        record.szBirthYear = std::move(date.year);
        record.szBirthMonth = std::move(date.month);
        record.szBirthDay = std::move(date.day);
        return true;
    }
    if (field.field == nullptr)
        return true;
    std::optional<std::string> value = valueOf(decoder, field.use, text, field.log);
    if (!value)
        return false;
    record.*field.field = *std::move(value);
    logLine(field.log.assigned, record.*field.field);
    return true;
}

template <typename Record, int count>
void decodeBlock(CIdData &decoder, const Layout<Record, count> &layout, unsigned char *byData,
                 Record *record)
{
    if (record == nullptr || byData == nullptr)
        return qBadAlloc(); // throws
    const bool atOnce = layout.assignment == Assignment::FIELD_BY_FIELD;
    std::array<std::string, count> texts;
    for (std::size_t i = 0; i < count; ++i) {
        const Field<Record> &field = layout.fields[i];
        texts[i] = decodedText(decoder, byData, field);
        logLine(field.log.decoded, texts[i]);
        if (atOnce && !assign(decoder, field, texts[i], *record))
            return;
    }
    for (std::size_t i = 0; !atOnce && i < count; ++i)
        if (!assign(decoder, layout.fields[i], texts[i], *record))
            // not reached by fuzzing: no field of these kinds can fail
            return;
}

} // namespace

void CIdData::parseChinaIdText(unsigned char *byData, _tagID_TEXT_INFO_CN *pInfo)
{
    decodeBlock(*this, card_layouts::CN_LAYOUT, byData, pInfo);
}

void CIdData::parseHMTIDText(unsigned char *byData, _tagID_TEXT_INFO_HMT *pInfo)
{
    decodeBlock(*this, card_layouts::HMT_LAYOUT, byData, pInfo);
}

void CIdData::parseForeign2017IDText(unsigned char *byData, _tagID_TEXT_INFO_FOREIGN_2017 *pInfo)
{
    decodeBlock(*this, card_layouts::FOREIGN_2017_LAYOUT, byData, pInfo);
}

void CIdData::parseForeignNewIDText(unsigned char *byData, _tagID_TEXT_INFO_FOREIGN_NEW *pInfo)
{
    decodeBlock(*this, card_layouts::FOREIGN_NEW_LAYOUT, byData, pInfo);
}
