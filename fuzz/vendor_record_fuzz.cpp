// The maker's record with any content: its fields, and the texts that the pictures make of them.

#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>

#include <QString>
#include <QStringList>

#include "api/field_extraction.h"
#include "common/card_info_struct.h"
#include "common/common.h"
#include "fuzz/input.h"
#include "render/card_texts.h"
#include "render/tools.h"

namespace
{

/** The bytes that UTF-8 needs at most for a UCS-2 text of this size. */
constexpr std::size_t LONGEST_FIELD = CCommon::MAX_UNICODE_SIZE / 2 * 3;

void demandWrapped(const QString &text, const QStringList &lines, int longest)
{
    demand(lines.join(QString()) == text);
    demand(std::all_of(lines.begin(), lines.end(),
                       [longest](const QString &line) { return line.length() <= longest; }));
}

/** A text goes onto a picture as it is, as a name, and in lines. */
void demandText(const std::string &field)
{
    demand(field.size() <= LONGEST_FIELD);
    QString text = card_texts::field(field);
    demand(card_texts::spreadName(field).length() <= text.length() + 3);
    constexpr int LINE_LENGTH = 11;
    demandWrapped(text, Tools::autoWrap(text, LINE_LENGTH), LINE_LENGTH);
    demandWrapped(text, Tools::autoWrapEx(text), 2 * LINE_LENGTH);
}

template <typename Record>
void demandDates(const Record &record)
{
    demand(card_texts::validity(record.szValidStart, record.szValidEnd).length() >= 3);
    demand(card_texts::dottedDate(record.szBirthYear, record.szBirthMonth, record.szBirthDay)
               .length() >= 2);
    demand(card_texts::datePart(record.szBirthMonth).text.length() <= 2);
    demand(card_texts::field(record.szBirthYear).length() <= 4);
}

template <typename Record>
Record extracted(CardInfoStruct &info)
{
    Record record{};
    extractFields(info, record);
    demandDates(record);
    for (const std::string *field : {&record.szSex, &record.szID, &record.szValidStart})
        demandText(*field);
    return record;
}

template <typename Record>
void extractForeigner(CardInfoStruct &info)
{
    const auto record = extracted<Record>(info);
    demandText(record.szEnglishName);
    demandText(record.szChineseName);
    demand(card_texts::bilingualSex(record.szSex).length() >= 0);
    demand(card_texts::nationality(record.szNationality).contains(QLatin1String(" / ")));
}

template <typename Record>
void extractResident(CardInfoStruct &info)
{
    const auto record = extracted<Record>(info);
    for (const std::string *field : {&record.szName, &record.szAddress, &record.szDept})
        demandText(*field);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto bytes = blockOf(data, size, sizeof(CardInfoStruct));
    const auto info = std::make_unique<CardInfoStruct>();
    std::memcpy(info.get(), bytes.get(), sizeof(CardInfoStruct));
    switch (info->kind) {
    case CARD_INFO_KIND_CN:
        extractResident<_tagIDCARD_INFO_ALL_CN>(*info);
        break;
    case CARD_INFO_KIND_HMT:
        extractResident<_tagIDCARD_INFO_ALL_HMT>(*info);
        break;
    case CARD_INFO_KIND_FOREIGN_2017:
        extractForeigner<_tagIDCARD_INFO_ALL_FOREIGN_2017>(*info);
        break;
    case CARD_INFO_KIND_FOREIGN_NEW:
        extractForeigner<_tagIDCARD_INFO_ALL_FOREIGN_NEW>(*info);
        break;
    default: // the library fills nothing
        break;
    }
    return 0;
}
