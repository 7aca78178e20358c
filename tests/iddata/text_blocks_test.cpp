// CIdData::parse...IdText: the text blocks of the four kinds. Each case is an ordinary card of its
// kind in which something is other; whatever the case does not name has to stay.

#include "tests/iddata/decoded_frame.h"
#include "tests/iddata/log_watch.h"
#include "tests/iddata/text_block.h"

#include <functional>
#include <new>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::Contains;

using testing::Pair;

struct Put {
    std::size_t offset;
    std::u16string text;
};

/** What a decoder makes of a block over a record that was used before. */
struct Decoded {
    FieldTexts fields;
    LogWatch::Lines log; ///< each with the fields that are assigned by then
};

/** A kind of document with an ordinary card. */
struct Kind {
    std::string name;
    std::function<Decoded(unsigned char *block)> decode;
    std::function<void(unsigned char *block)> expectNullsThrow;
    std::vector<Put> card;
    FieldTexts fields; ///< all that the record has
    LogWatch::Lines log;
};

template <typename Record>
Kind makeKind(const char *name, void (CIdData::*parse)(unsigned char *, Record *),
              const std::vector<Put> &card, const FieldTexts &fields,
              const LogWatch::Lines &log = {})
{
    const auto decode = [parse](unsigned char *block) {
        auto record = oldRecord<Record>();
        Decoder decoder;
        const LogWatch watch([&record] { return assignedFields(record); });
        (decoder.operator->()->*parse)(block, &record);
        return Decoded{textsOf(record), watch.lines()};
    };
    const auto expectNullsThrow = [parse](unsigned char *block) {
        auto record = oldRecord<Record>();
        Decoder decoder;
        const LogWatch watch([] { return std::string(); });
        CIdData *const data = decoder.operator->();
        EXPECT_THROW((data->*parse)(nullptr, &record), std::bad_alloc);
        EXPECT_THROW((data->*parse)(block, nullptr), std::bad_alloc);
        EXPECT_THROW((data->*parse)(nullptr, nullptr), std::bad_alloc);
        EXPECT_EQ(assignedFields(record), "");
        EXPECT_THAT(watch.lines(), testing::IsEmpty());
    };
    return {name, decode, expectNullsThrow, card, fields, log};
}

const Kind &residentCard()
{
    static const Kind kind = makeKind("Resident", &CIdData::parseChinaIdText,
                                      {{0, u"王小明"},
                                       {30, u"1"},
                                       {32, u"01"},
                                       {36, u"19800102"},
                                       {52, u"北京市西城区南大街1号"},
                                       {122, u"11010219800102001X"},
                                       {158, u"北京市公安局"},
                                       {188, u"20100203"},
                                       {204, u"20301231"},
                                       {220, u"XXXXXXXXXXXXXXXXXX"}}, // reserved
                                      {{"szName", padded("王小明", 12)},
                                       {"szSex", "男"},
                                       {"szNation", "汉"},
                                       {"szBirthYear", "1980"},
                                       {"szBirthMonth", "01"},
                                       {"szBirthDay", "02"},
                                       {"szAddress", padded("北京市西城区南大街1号", 24)},
                                       {"szID", "11010219800102001X"},
                                       {"szDept", padded("北京市公安局", 9)},
                                       {"szValidStart", "2010.02.03"},
                                       {"szValidEnd", "2030.12.31"}});
    return kind;
}

const Kind &permit()
{
    static const Kind kind =
        makeKind("Permit", &CIdData::parseHMTIDText,
                 {{0, u"陈大文"},
                  {30, u"2"},
                  {32, u"77"},
                  {36, u"19900203"},
                  {52, u"广东省深圳市福田区福中路8号"},
                  {122, u"81000019900203002"},
                  {158, u"深圳市公安局"},
                  {188, u"20190101"},
                  {204, u"20240101"},
                  {220, u"H12345678"},
                  {238, u"01"},
                  {248, u"J"},
                  {250, u"XXX"}},
                 {{"szName", padded("陈大文", 12)},
                  {"szSex", "女"},
                  {"szBirthYear", "1990"},
                  {"szBirthMonth", "02"},
                  {"szBirthDay", "03"},
                  {"szAddress", padded("广东省深圳市福田区福中路8号", 21)},
                  {"szID", "81000019900203002 "},
                  {"szDept", padded("深圳市公安局", 9)},
                  {"szValidStart", "2019.01.01"},
                  {"szValidEnd", "2024.01.01"},
                  {"szPassNumber", "H12345678"},
                  {"szIssueCount", "01"}},
                 {{"szID=81000019900203002 ", ""}, {"szDept=深圳市公安局         ", ""}});
    return kind;
}

const Kind &foreignCardOf2017()
{
    static const Kind kind =
        makeKind("Foreign2017", &CIdData::parseForeign2017IDText,
                 {{0, u"SMITH, JOHN"},
                  {120, u"1"},
                  {122, u"USA310058010101"},
                  {152, u"USA"},
                  {158, u"史密斯"},
                  {188, u"20180304"},
                  {204, u"20280303"},
                  {220, u"19580101"},
                  {236, u"01"},
                  {240, u"1500"},
                  {248, u"I"},
                  {250, u"XXX"}},
                 {{"szEnglishName", padded("SMITH, JOHN", 20)}, // 31 of the field's 60 characters
                  {"szSex", "男"},
                  {"szID", "USA310058010101"},
                  {"szNationalityCode", "USA"},
                  {"szChineseName", padded("史密斯", 12)},
                  {"szValidStart", "2018.03.04"},
                  {"szValidEnd", "2028.03.03"},
                  {"szBirthYear", "1958"},
                  {"szBirthMonth", "01"},
                  {"szBirthDay", "01"}});
    return kind;
}

const Kind &newForeignCard()
{
    static const std::string extra = "szChineseName szSex szCardExtra";
    static const std::string english = extra + " szBirthYear szBirthMonth szBirthDay szEnglishName";
    static const std::string valid = english + " szID szValidStart szValidEnd";
    static const Kind kind = makeKind(
        "ForeignNew", &CIdData::parseForeignNewIDText,
        {{0, u"史密斯"},
         {30, u"1"},
         {32, u"AB"},
         {36, u"19580101"},
         {52, u"SMITH, JOHN"},
         {122, u"911840195801010015"},
         {158, u"国家移民管理局"},
         {188, u"20231201"},
         {204, u"20331130"},
         {220, u"EDWARD"},
         {242, u"USA"},
         {248, u"Y"},
         {250, u"XXX"}},
        {{"szChineseName", padded("史密斯", 12)},
         {"szSex", "男"},
         {"szCardExtra", "AB"},
         {"szBirthYear", "1958"},
         {"szBirthMonth", "01"},
         {"szBirthDay", "01"},
         {"szEnglishName", padded("SMITH, JOHN", 20)}, // 31 of the field's 35 characters
         {"szID", "911840195801010015"},
         {"szValidStart", "2023.12.01"},
         {"szValidEnd", "2033.11.30"},
         {"szNationality", "美国 / USA"}},
        {{"<so>szSexCode=1", "szChineseName"},
         {"genderName =  \"男\"", "szChineseName"},
         {"pid_text_info_foreign_new->gender=男", "szChineseName szSex"},
         {"<from so>szBirth=19580101", extra},
         {"<so>szEnglishName=" + padded("SMITH, JOHN", 20), english},
         {"nationality= \"美国\"", valid},
         {"pid_text_info_foreign_new->nationality= 美国 / USA", valid + " szNationality"}});
    return kind;
}

/** The card of a kind with these texts. */
TextBlock &fill(TextBlock &block, const Kind &kind, const std::vector<Put> &texts)
{
    for (const auto *const puts : {&kind.card, &texts})
        for (const Put &put : *puts)
            block.put(put.offset, put.text);
    return block;
}

class EveryKind : public testing::TestWithParam<const Kind *>
{
};

TEST_P(EveryKind, OrdinaryCard_FillsEveryFieldWithItsPaddingAndLogsItsLines)
{
    for (const auto side : GUARD_SIDES) {
        TextBlock block(side);
        const Decoded decoded = GetParam()->decode(fill(block, *GetParam(), {}).data());
        EXPECT_EQ(decoded.fields, GetParam()->fields);
        EXPECT_EQ(decoded.log, GetParam()->log);
    }
}

TEST_P(EveryKind, NullPointers_ThrowBeforeAnythingIsLoggedOrWritten)
{
    TextBlock block;
    GetParam()->expectNullsThrow(block.data());
}

INSTANTIATE_TEST_SUITE_P(Text, EveryKind,
                         testing::Values(&residentCard(), &permit(), &foreignCardOf2017(),
                                         &newForeignCard()),
                         [](const auto &kind) { return kind.param->name; });

/** A card that is not ordinary. */
struct Case {
    const char *what;
    const Kind *kind;
    std::vector<Put> puts;
    FieldTexts fields;              ///< that are not those of the ordinary card
    std::vector<std::string> log{}; ///< lines of the log
    std::size_t fewerLines = 0;     ///< than of the ordinary card
};

void PrintTo(const Case &c, std::ostream *stream)
{
    *stream << c.kind->name << ": " << c.what;
}

class EveryCase : public testing::TestWithParam<Case>
{
};

TEST_P(EveryCase, ChangesWhatItNamesAndNothingElse)
{
    const Case &c = GetParam();
    for (const auto side : GUARD_SIDES) {
        TextBlock block(side);
        fill(block, *c.kind, c.puts);
        TextBlock copy;
        std::copy_n(block.data(), TextBlock::SIZE, copy.data());
        const Decoded decoded = c.kind->decode(block.data());
        EXPECT_TRUE(block == copy) << "the block was written to";
        for (const auto &[field, ordinary] : c.kind->fields) {
            const auto changed = c.fields.find(field);
            EXPECT_EQ(decoded.fields.at(field),
                      changed == c.fields.end() ? ordinary : changed->second)
                << field;
        }
        EXPECT_EQ(decoded.log.size() + c.fewerLines, c.kind->log.size());
        for (const std::string &line : c.log)
            EXPECT_THAT(decoded.log, Contains(Pair(line, testing::_)));
    }
}

std::u16string withZeros(std::u16string text, std::size_t size)
{
    text.resize(size, u'\0');
    return text;
}

std::vector<Case> sexes()
{
    std::vector<Case> cases;
    for (const auto *const kind : {&residentCard(), &permit()}) {
        cases.push_back({"sex of a man", kind, {{30, u"1"}}, {{"szSex", "男"}}});
        for (const auto *const code :
             {u"2", u"0", u"9", u" ", u"5", u"x", u"男", u"\uff11" /* a wide 1 */})
            cases.push_back({"other sex", kind, {{30, code}}, {{"szSex", "女"}}});
        cases.push_back({"sex of zeros", kind, {{30, withZeros({}, 1)}}, {{"szSex", "女"}}});
    }
    const std::pair<std::u16string, std::string> labels[] = {
        {u"0", "未知"},  {u"1", "男"},   {u"2", "女"},    {u"9", "未说明"},    {u" ", "未知"},
        {u"\0", "未知"}, {u"x", "未知"}, {u"男", "未知"}, {u"\u0661", "未知"}, {u"\xd800", "未知"}};
    for (const auto &[code, label] : labels) {
        const std::u16string text = withZeros(code, 1);
        cases.push_back(
            {"label of a sex", &foreignCardOf2017(), {{120, text}}, {{"szSex", label}}});
        cases.push_back(
            {"label of a sex",
             &newForeignCard(),
             {{30, text}},
             {{"szSex", label}},
             {"genderName =  \"" + label + "\"", "pid_text_info_foreign_new->gender=" + label}});
    }
    return cases;
}

std::vector<Case> ethnicGroups()
{
    const std::pair<std::u16string, const char *> codes[] = {
        {u"01", "汉"},   {u"97", "其他"}, {u"98", "外国血统中国籍人士"},
        {u"57", ""},     {u"00", ""},     {u"  ", ""},
        {u" 2", "蒙古"}, {u"2 ", "蒙古"}, {u"3x", "回"},
        {u"x3", ""},     {u"-1", ""},     {u"+4", "藏"},
        {u"汉 ", ""},    {u"99", ""},     {withZeros(u"5", 2), "维吾尔"},
    };
    std::vector<Case> cases;
    for (const auto &[code, name] : codes)
        cases.push_back({"ethnic group", &residentCard(), {{32, code}}, {{"szNation", name}}});
    return cases;
}

/** The six bytes of 长期 count as six digits where it has no meaning. */
const std::string NO_LONG_TERM = "\u00e9\u0095\u00bf\u00e6.\u009c\u009f.      ";

std::vector<Case> dates()
{
    std::vector<Case> cases;
    for (const auto *const kind : {&residentCard(), &permit()}) {
        for (const auto *const end :
             {u"长期      ", u"   长期   ", u"      长期", u"2030长期", u"长期长期"})
            cases.push_back(
                {"long term", kind, {{204, u"        "}, {204, end}}, {{"szValidEnd", "长期"}}});
        cases.push_back({"blank inside the long term",
                         kind,
                         {{204, u"长 期     "}},
                         {{"szValidEnd", "\u00e9\u0095\u00bf .\u00e6\u009c.\u009f     "}}});
    }
    cases.push_back({"start of a long term",
                     &residentCard(),
                     {{188, u"长期      "}},
                     {{"szValidStart", NO_LONG_TERM}}});
    for (const auto *const kind : {&foreignCardOf2017(), &newForeignCard()})
        cases.push_back({"long term of a foreigner",
                         kind,
                         {{204, u"长期      "}},
                         {{"szValidEnd", NO_LONG_TERM}}});
    const struct {
        std::u16string text;
        std::string year, month, day;
    } shortDates[] = {{u"", "", "", ""},
                      {u"2", "2", "", ""},
                      {u"2030", "2030", "", ""},
                      {u"20301", "2030", "1", ""},
                      {u"203012", "2030", "12", ""},
                      {u"2030123", "2030", "12", "3"},
                      {u"        ", "    ", "  ", "  "},
                      {u"2030-1-2", "2030", "-1", "-2"}};
    for (const auto &date : shortDates) {
        const std::u16string text = withZeros(date.text, 8);
        const std::string dotted = date.year + '.' + date.month + '.' + date.day;
        cases.push_back({"short date",
                         &residentCard(),
                         {{36, text}, {188, text}, {204, text}},
                         {{"szBirthYear", date.year},
                          {"szBirthMonth", date.month},
                          {"szBirthDay", date.day},
                          {"szValidStart", dotted},
                          {"szValidEnd", dotted}}});
    }
    return cases;
}

std::vector<Case> countries()
{
    std::vector<Case> cases;
    for (const auto &[text, code] :
         {std::pair(u"ZZZ", "ZZZ"), std::pair(u"usa", "usa"), std::pair(u"CR ", "CR ")})
        cases.push_back({"code of a country",
                         &foreignCardOf2017(),
                         {{152, text}},
                         {{"szNationalityCode", code}}});
    const std::pair<std::u16string, std::string> unknown[] = {
        {u"ZZZ", "ZZZ"},     {u"usa", "usa"},        {u"   ", "   "}, {u"CR ", "CR "},
        {u"中国人", "中国"}, {withZeros({}, 3), ""}, {u"STP", "STP"}, {u"\ufeffCR", "\ufeffCR"},
    };
    for (const auto &[text, code] : unknown)
        cases.push_back({"unknown country without a line about its name",
                         &newForeignCard(),
                         {{242, text}},
                         {{"szNationality", " / " + code}},
                         {"pid_text_info_foreign_new->nationality=  / " + code},
                         1});
    cases.push_back({"code of two letters, ended by a zero",
                     &newForeignCard(),
                     {{242, withZeros(u"CR", 3)}},
                     {{"szNationality", "哥斯达黎加 / CR"}}});
    return cases;
}

std::vector<Case> texts()
{
    const std::u16string fifteen = u"一二三四五六七八九十甲乙丙丁戊";
    const std::string kept = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcde";
    return {
        {"zero inside a text",
         &residentCard(),
         {{0, std::u16string(u"王\0小", 3)}},
         {{"szName", "王"}}},
        {"logged texts are no formats",
         &permit(),
         {{122, u"%s%n%1 100%        "}, {158, fifteen}},
         {{"szID", "%s%n%1 100%       "}, {"szDept", "一二三四五六七八九十"}},
         {"szID=%s%n%1 100%       ", "szDept=一二三四五六七八九十"}},
        {"English name that is not continued",
         &newForeignCard(),
         {{52, u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghi"}},
         {{"szEnglishName", kept}},
         {"<so>szEnglishName=" + kept}},
        {"reserved bytes", &residentCard(), {{220, std::u16string(18, u'Y')}}, {}},
        {"reserved bytes", &permit(), {{32, u"中文"}, {242, u"XYZ"}, {250, u"XYZ"}}, {}},
        {"reserved bytes", &permit(), {{32, u"\ufeff\xd800"}}, {}},
        {"dropped fields",
         &foreignCardOf2017(),
         {{236, u"中文"}, {240, u"\xd800XXX"}, {248, u"YXXX"}},
         {}},
        {"dropped fields",
         &newForeignCard(),
         {{158, std::u16string(15, u'中')}, {220, std::u16string(11, u'\xd800')}, {248, u"IXXX"}},
         {}},
    };
}

INSTANTIATE_TEST_SUITE_P(Sex, EveryCase, testing::ValuesIn(sexes()));
INSTANTIATE_TEST_SUITE_P(EthnicGroup, EveryCase, testing::ValuesIn(ethnicGroups()));
INSTANTIATE_TEST_SUITE_P(Date, EveryCase, testing::ValuesIn(dates()));
INSTANTIATE_TEST_SUITE_P(Country, EveryCase, testing::ValuesIn(countries()));
INSTANTIATE_TEST_SUITE_P(Text, EveryCase, testing::ValuesIn(texts()));

TEST(ForeignersSex, UnassignedCode_IsLoggedAndEndsTheDecodingAfterTheName)
{
    for (const auto *const code : {u"3", u"4", u"5", u"6", u"7", u"8"}) {
        for (const auto &[kind, offset, name] :
             {std::tuple(&foreignCardOf2017(), 120, "szEnglishName"),
              std::tuple(&newForeignCard(), 30, "szChineseName")}) {
            TextBlock block;
            fill(block, *kind, {{static_cast<std::size_t>(offset), code}});
            Decoded decoded = kind->decode(block.data());
            EXPECT_EQ(decoded.fields[name], kind->fields.at(name));
            for (const auto &[field, text] : decoded.fields)
                EXPECT_TRUE(field == name || text == OLD_TEXT) << field;
            LogWatch::Lines log = {{"gender parse fail!", name}};
            if (kind == &newForeignCard())
                log.insert(log.begin(),
                           {"<so>szSexCode=" + std::string(1, static_cast<char>(*code)), name});
            EXPECT_EQ(decoded.log, log);
        }
    }
}

} // namespace
