// What the codes on a card stand for: ethnic groups, sexes, countries; and the record that a
// decoder keeps.

#include "common/country_code_list.h"
#include "tests/iddata/decoder.h"
#include "tests/support/message_log.h"

#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

const std::map<int, std::string> ETHNIC_GROUP_NAMES = {
    {1, "汉"},        {2, "蒙古"},
    {3, "回"},        {4, "藏"},
    {5, "维吾尔"},    {6, "苗"},
    {7, "彝"},        {8, "壮"},
    {9, "布依"},      {10, "朝鲜"},
    {11, "满"},       {12, "侗"},
    {13, "瑶"},       {14, "白"},
    {15, "土家"},     {16, "哈尼"},
    {17, "哈萨克"},   {18, "傣"},
    {19, "黎"},       {20, "傈僳"},
    {21, "佤"},       {22, "畲"},
    {23, "高山"},     {24, "拉祜"},
    {25, "水"},       {26, "东乡"},
    {27, "纳西"},     {28, "景颇"},
    {29, "柯尔克孜"}, {30, "土"},
    {31, "达斡尔"},   {32, "仫佬"},
    {33, "羌"},       {34, "布朗"},
    {35, "撒拉"},     {36, "毛南"},
    {37, "仡佬"},     {38, "锡伯"},
    {39, "阿昌"},     {40, "普米"},
    {41, "塔吉克"},   {42, "怒"},
    {43, "乌孜别克"}, {44, "俄罗斯"},
    {45, "鄂温克"},   {46, "德昂"},
    {47, "保安"},     {48, "裕固"},
    {49, "京"},       {50, "塔塔尔"},
    {51, "独龙"},     {52, "鄂伦春"},
    {53, "赫哲"},     {54, "门巴"},
    {55, "珞巴"},     {56, "基诺"},
    {97, "其他"},     {98, "外国血统中国籍人士"},
};

class Codes : public testing::Test
{
protected:
    /** The label, or "-" when there is none and the name was left alone. */
    std::string genderOf(const QString &code)
    {
        QString name = QStringLiteral("-");
        const bool known = decoder->parseGender(code, name);
        EXPECT_EQ(known, name != QLatin1String("-"));
        return name.toStdString();
    }

    /** The name, or "-" when there is none and the name was left alone. */
    std::string countryOf(const QString &code)
    {
        QString name = QStringLiteral("-");
        const bool known = decoder->parseNationality(code, name);
        EXPECT_EQ(known, name != QLatin1String("-"));
        return name.toStdString();
    }

    Decoder decoder;
    MessageLog log;
};

} // namespace

TEST_F(Codes, EveryEthnicGroupCode_GivesItsNameOrNothing)
{
    for (int code = 0; code <= 65535; ++code) {
        const auto found = ETHNIC_GROUP_NAMES.find(code);
        ASSERT_EQ(decoder->GetNation(static_cast<unsigned short>(code)),
                  found != ETHNIC_GROUP_NAMES.end() ? found->second : "")
            << code;
    }
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(Codes, SexCodes_GiveTheFourLabelsAsNumbersAndNoneIfUnassigned)
{
    const std::pair<const char *, std::vector<const char *>> labels[] = {
        {"未知", {"0", "", " ", "x", "1x", "1.0", "0x1", "99999999999"}}, // what is no number, too
        {"男", {"1", " 1 "}},
        {"女", {"2"}},
        {"未说明", {"9", "09"}},
        {"-", {"3", "4", "5", "6", "7", "8", "10", "-1", "19", "256", "2147483647"}}};
    for (const auto &[label, codes] : labels)
        for (const char *code : codes)
            EXPECT_EQ(genderOf(QLatin1String(code)), label) << code;
    EXPECT_EQ(genderOf(QString()), "未知");
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(Codes, EveryCountry_IsFoundByItsThreeLettersAndLogged)
{
    for (const auto &[numeric, alpha3, name] : COUNTRY_CODE_LIST) {
        const MessageLog ownLog;
        EXPECT_EQ(countryOf(QString::fromStdString(alpha3)), name);
        EXPECT_THAT(ownLog.debugTexts(), ElementsAre("nationality= \"" + name + '"'));
    }
}

TEST_F(Codes, AnyOtherCountryCode_FailsWithoutAWord)
{
    for (const char *code : {"", " ", "usa", "Usa", "USA ", " USA", "STP", "CRI", "CR ", "840",
                             "ZZZ", "US", "USAA", "SRB"})
        EXPECT_EQ(countryOf(QLatin1String(code)), "-") << code;
    for (const auto &row : COUNTRY_CODE_LIST) {
        EXPECT_EQ(countryOf(QString::fromStdString(row[0])), "-") << row[0];
        EXPECT_EQ(countryOf(QString::fromStdString(row[1]).toLower()), "-") << row[1];
        EXPECT_EQ(countryOf(QString::fromStdString(row[1]) + ' '), "-") << row[1];
    }
    EXPECT_EQ(countryOf(QString::fromUtf8("USA\0", 4)), "-");
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST(Record, Decoder_KeepsAReferenceAndCopiesNoBytes)
{
    QByteArray record(1297, 'x');
    const char *const bytes = record.constData();
    EXPECT_TRUE(record.isDetached());
    {
        const CIdData decoder(record, FP_INFO_NONE);
        EXPECT_FALSE(record.isDetached()) << "shared with the decoder";
        EXPECT_EQ(record.constData(), bytes);
    }
    EXPECT_TRUE(record.isDetached()) << "released";
}
