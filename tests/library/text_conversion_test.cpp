// CCommon: UCS-2 card text to UTF-8, trimming, and the wrapper over iconv.

#include "common/common.h"

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QString>

namespace
{

using Bytes = std::vector<unsigned char>;

Bytes ucs2(const QString &text)
{
    Bytes bytes;
    for (const QChar c : text) {
        bytes.push_back(c.cell());
        bytes.push_back(c.row());
    }
    return bytes;
}

std::string toUtf8(Bytes bytes)
{
    return CCommon::unicode2Utf8Str(bytes.data(), bytes.size());
}

constexpr wchar_t UNTOUCHED = 0x7777;

std::array<wchar_t, 4> widened(Bytes bytes, unsigned long len)
{
    std::array<wchar_t, 4> wide{UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED};
    CCommon::uchar2wchar(bytes.data(), len, wide.data());
    return wide;
}

} // namespace

TEST(Uchar2wchar, OddByteAtTheEnd_IsDropped)
{
    const auto wide = widened({0x34, 0x12, 0x78}, 3);
    EXPECT_EQ(wide[0], 0x1234);
    EXPECT_EQ(wide[1], 0);
    EXPECT_EQ(wide[2], UNTOUCHED);
}

TEST(Uchar2wchar, HighBytes_AreUnsigned)
{
    const auto wide = widened({0xff, 0xff, 0x80, 0x80}, 4);
    EXPECT_EQ(wide[0], 0xffff);
    EXPECT_EQ(wide[1], 0x8080);
    EXPECT_EQ(wide[2], 0);
    EXPECT_EQ(wide[3], UNTOUCHED);
}

TEST(Uchar2wchar, LengthZeroOrOne_WritesOnlyTheTerminator)
{
    for (const unsigned long len : {0UL, 1UL}) {
        const auto wide = widened({0x41, 0x00}, len);
        EXPECT_EQ(wide[0], 0) << len;
        EXPECT_EQ(wide[1], UNTOUCHED) << len;
    }
}

TEST(Uchar2wchar, ZeroCharacterInside_DoesNotEndTheConversion)
{
    const auto wide = widened({0x00, 0x00, 0x41, 0x00}, 4);
    EXPECT_EQ(wide[0], 0);
    EXPECT_EQ(wide[1], L'A');
}

TEST(Unicode2Utf8Str, TwoChineseCharactersThenZeros_GiveSixBytes)
{
    Bytes bytes = ucs2(QStringLiteral("王五"));
    bytes.resize(30, 0);
    EXPECT_EQ(toUtf8(bytes), "王五");
    EXPECT_EQ(toUtf8(bytes).size(), 6U);
}

TEST(Unicode2Utf8Str, SpacePadding_Stays)
{
    EXPECT_EQ(toUtf8(ucs2(QStringLiteral("AB  "))), "AB  ");
}

TEST(Unicode2Utf8Str, TextAfterTheFirstZero_IsDropped)
{
    EXPECT_EQ(toUtf8({0x41, 0x00, 0x00, 0x00, 0x42, 0x00}), "A");
}

TEST(Unicode2Utf8Str, EmptyInputOrLeadingZero_GivesEmptyText)
{
    EXPECT_EQ(toUtf8({}), "");
    EXPECT_EQ(toUtf8({0x41}), "");
    EXPECT_EQ(toUtf8({0x00, 0x00, 0x42, 0x00}), "");
}

TEST(Unicode2Utf8Str, OneTwoAndThreeByteCharacters_AreConverted)
{
    EXPECT_EQ(toUtf8(ucs2(QStringLiteral("Aé㐀龥"))), "Aé㐀龥");
}

TEST(Unicode2Utf8Str, LongestInput_IsConvertedWhole)
{
    const QString text(61, QChar(0x9fa5));
    EXPECT_EQ(toUtf8(ucs2(text)), text.toStdString());
}

TEST(Unicode2Utf8Str, LongerInput_StaysInsideItsArray)
{
    const QString text(2000, QChar(0x9fa5));
    EXPECT_EQ(toUtf8(ucs2(text)), text.left(61).toStdString());
}

TEST(Unicode2Utf8Str, SurrogateHalves_ComeOutAsQtTreatsThem)
{
    const uint half[] = {0xd800, 0x41, 0};
    EXPECT_EQ(toUtf8({0x00, 0xd8, 0x41, 0x00}), QString::fromUcs4(half).toUtf8().toStdString());
}

TEST(Trim, BlanksAndTabsAtBothEnds_AreRemoved)
{
    EXPECT_EQ(CCommon::trim(" \t男\t "), "男");
}

TEST(Trim, BlanksAndTabsInside_Stay)
{
    EXPECT_EQ(CCommon::trim("\ta \t b "), "a \t b");
}

TEST(Trim, LineEndsAndIdeographicSpace_Stay)
{
    EXPECT_EQ(CCommon::trim("\r\n"), "\r\n");
    EXPECT_EQ(CCommon::trim("\u3000"), "\u3000");
    EXPECT_EQ(CCommon::trim(" \n "), "\n");
}

TEST(Trim, NothingButPadding_GivesEmptyText)
{
    EXPECT_EQ(CCommon::trim("   "), "");
    EXPECT_EQ(CCommon::trim("\t"), "");
    EXPECT_EQ(CCommon::trim(""), "");
}

TEST(Trim, TextWithoutPadding_StaysAsItIs)
{
    EXPECT_EQ(CCommon::trim("男"), "男");
}

namespace
{

std::string convert(const char *from, std::string input, const char *to, int capacity)
{
    std::string output(64, '#');
    CCommon::iconv_ex(from, input.data(), static_cast<int>(input.size()), to, output.data(),
                      capacity);
    return output.substr(0, output.find('#'));
}

} // namespace

TEST(IconvEx, KnownCharacterSets_AreConvertedWithoutTerminator)
{
    EXPECT_EQ(convert("UTF-16LE", {"\x4d\x51\x41\x00", 4}, "UTF-8", 64), "免A");
}

TEST(IconvEx, UnknownCharacterSet_LeavesTheOutputUntouched)
{
    EXPECT_EQ(convert("no-such-set", "abc", "UTF-8", 64), "");
    EXPECT_EQ(convert("UTF-8", "abc", "no-such-set", 64), "");
}

TEST(IconvEx, OutputTooSmall_StopsAfterTheLastWholeCharacter)
{
    EXPECT_EQ(convert("UTF-16LE", {"\x4d\x51\x4d\x51", 4}, "UTF-8", 5), "免");
    EXPECT_EQ(convert("UTF-16LE", {"\x4d\x51\x4d\x51", 4}, "UTF-8", 0), "");
}

TEST(IconvEx, InvalidSequence_KeepsWhatCameBefore)
{
    EXPECT_EQ(convert("UTF-8",
                      "ab\xff"
                      "cd",
                      "UTF-8", 64),
              "ab");
}

TEST(IconvEx, NegativeLength_DoesNothing)
{
    std::string input = "abc";
    std::string output = "####";
    CCommon::iconv_ex("UTF-8", input.data(), -1, "UTF-8", output.data(), 4);
    CCommon::iconv_ex("UTF-8", input.data(), 3, "UTF-8", output.data(), -1);
    EXPECT_EQ(output, "####");
}
