// The country table: every row, and the look-up by alpha-3 code.

#include "common/country_code_list.h"
#include "render/tools.h"

#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <QString>

namespace
{

struct Row {
    int index;
    const char *numeric;
    const char *alpha3;
    const char *name;
};

/** The rows that differ from the standard or stand elsewhere, exactly as the cards have them. */
constexpr Row UNUSUAL_ROWS[] = {
    {44, "344", "HKG", "香港"},
    {45, "446", "MAC", "澳门"},
    {46, "158", "TWN", "台湾"},
    {47, "162", "CSR", "圣诞岛"},
    {54, "188", "CR", "哥斯达黎加"},
    {64, "626", "TMP", "东帝汶"},
    {81, "270", "GMB", "冈比亚Gambia"},
    {151, "530", "ANT", "荷属安的列斯"},
    {164, "374", "PST", "巴勒斯坦"},
    {176, "642", "ROM", "罗马尼亚"},
    {186, "678", "STp", "圣多美和普林西比"},
    {236, "891", "YUG", "南斯拉夫"},
};

/** All alpha-3 codes in row order. */
constexpr const char *ALPHA3_IN_ORDER =
    "AFG ALB DZA ASM AND AGO AIA ATA ATG ARG ARM ABW AUS AUT AZE BHS BHR BGD BRB BLR BEL BLZ "
    "BEN BMU BTN BOL BIH BWA BVT BRA IOT BRN BGR BFA BDI KHM CMR CAN CPV CYM CAF TCD CHL CHN "
    "HKG MAC TWN CSR CCK COL COM COG COD COK CR CIV HRV CUB CYP CZE DNK DJI DMA DOM TMP ECU "
    "EGY SLV GNQ ERI EST ETH FLK FRO FJI FIN FRA GUF PYF ATF GAB GMB GEO DEU GHA GIB GRC GRL "
    "GRD GLP GUM GTM GIN GNB GUY HTI HMD HND HUN ISL IND IDN IRN IRQ IRL ISR ITA JAM JPN JOR "
    "KAZ KEN KIR PRK KOR KWT KGZ LAO LVA LBN LSO LBR LBY LIE LTU LUX MKD MDG MWI MYS MDV MLI "
    "MLT MHL MTQ MRT MUS MYT MEX FSM MDA MCO MNG MSR MAR MOZ MMR NAM NRU NPL NLD ANT NCL NZL "
    "NIC NER NGA NIU NFK MNP NOR OMN PAK PLW PST PAN PNG PRY PER PHL PCN POL PRT PRI QAT REU "
    "ROM RUS RWA SHN KNA LCA SPM VCT WSM SMR STp SAU SEN SYC SLE SGP SVK SVN SLB SOM ZAF SGS "
    "ESP LKA SDN SUR SJM SWZ SWE CHE SYR TJK TZA THA TGO TKL TON TTO TUN TUR TKM TCA TUV UGA "
    "UKR ARE GBR USA UMI URY UZB VUT VAT VEN VNM VGB VIR WLF ESH YEM YUG ZMB ZWE ";

const std::map<std::string, std::string> &standardCodes()
{
    static const std::map<std::string, std::string> codes = {
#include "tests/library/iso_3166_1.inc"
    };
    return codes;
}

std::string nameOf(const char *code)
{
    return Tools::convertNationCodeToName(code);
}

} // namespace

TEST(CountryTable, Alpha3Codes_AreInTheirOrder)
{
    std::string all;
    for (const auto &row : COUNTRY_CODE_LIST)
        all += row[1] + ' ';
    EXPECT_EQ(all, ALPHA3_IN_ORDER);
}

TEST(CountryTable, UnusualRows_AreKept)
{
    for (const Row &row : UNUSUAL_ROWS) {
        EXPECT_EQ(COUNTRY_CODE_LIST[row.index][0], row.numeric) << row.index;
        EXPECT_EQ(COUNTRY_CODE_LIST[row.index][1], row.alpha3) << row.index;
        EXPECT_EQ(COUNTRY_CODE_LIST[row.index][2], row.name) << row.index;
    }
}

TEST(CountryTable, OtherRows_CarryTheNumericCodeOfTheStandard)
{
    std::set<std::string> unusual;
    for (const Row &row : UNUSUAL_ROWS)
        unusual.insert(row.alpha3);

    int compared = 0;
    for (const auto &row : COUNTRY_CODE_LIST) {
        if (unusual.count(row[1]) != 0)
            continue;
        const auto standard = standardCodes().find(row[1]);
        ASSERT_NE(standard, standardCodes().end()) << row[1];
        EXPECT_EQ(row[0], standard->second) << row[1];
        ++compared;
    }
    EXPECT_EQ(compared, 227);
}

TEST(CountryTable, CodesAndNames_AreUnique)
{
    std::set<std::string> numeric;
    std::set<std::string> alpha3;
    std::set<std::string> names;
    for (const auto &row : COUNTRY_CODE_LIST) {
        EXPECT_TRUE(numeric.insert(row[0]).second) << row[0];
        EXPECT_TRUE(alpha3.insert(row[1]).second) << row[1];
        EXPECT_TRUE(names.insert(row[2]).second) << row[2];
    }
}

TEST(CountryTable, Columns_AreThreeDigitsAndAChineseName)
{
    for (const auto &row : COUNTRY_CODE_LIST) {
        EXPECT_EQ(row[0].find_first_not_of("0123456789"), std::string::npos) << row[0];
        EXPECT_EQ(row[0].size(), 3U);
        const QString name = QString::fromStdString(row[2]);
        ASSERT_FALSE(name.isEmpty()) << row[1];
        EXPECT_EQ(name.toStdString(), row[2]) << "valid UTF-8";
        EXPECT_GE(name.at(0), QChar(0x4e00)) << row[1];
        EXPECT_LE(name.at(0), QChar(0x9fff)) << row[1];
    }
}

TEST(CountryTable, Names_AreThoseOfEverydayUseWithTheParenthesesOfTheCards)
{
    for (const auto &[code, name] : {std::pair("USA", "美国"),
                                     {"GBR", "英国"},
                                     {"CAN", "加拿大"},
                                     {"KOR", "韩国"},
                                     {"PRK", "朝鲜"},
                                     {"JPN", "日本"},
                                     {"DEU", "德国"},
                                     {"RUS", "俄罗斯"},
                                     {"DMA", "多米尼克"},
                                     {"DOM", "多米尼加"},
                                     {"ARE", "阿联酋"},
                                     {"ZWE", "津巴布韦"},
                                     {"CHN", "中国"},
                                     {"COG", "刚果（布）"},
                                     {"COD", "刚果（金）"},
                                     {"CCK", "科科斯(基林)群岛"},
                                     {"FLK", "福克兰群岛(马尔维纳斯)"}})
        EXPECT_EQ(nameOf(code), name);
}

TEST(CountryTable, CodesAddedLaterOrWrittenOtherwise_AreAbsent)
{
    for (const char *code : {"SRB", "MNE", "SSD", "ALA", "GGY", "JEY", "IMN", "BLM", "MAF", "CUW",
                             "SXM", "BES", "PSE", "TLS", "ROU", "CXR", "CRI", "STP",
                             // other case, padding and columns
                             "chn", "CHN ", " CHN", "CH", "", "156"})
        EXPECT_EQ(nameOf(code), "") << code;
}

TEST(ConvertNationCodeToName, EveryRow_IsFoundByItsCode)
{
    for (const auto &row : COUNTRY_CODE_LIST)
        EXPECT_EQ(Tools::convertNationCodeToName(row[1]), row[2]);
}
