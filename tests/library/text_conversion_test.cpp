// CCommon: UCS-2 card text to UTF-8, trimming, and the wrapper over iconv.

#include "common/common.h"

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QString>

#include "tests/support/ucs2.h"

namespace
{

using Bytes = std::vector<unsigned char>;

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

TEST(Uchar2wchar, Bytes_AreUnsignedCharactersAndATerminator)
{
    constexpr wchar_t FREE = UNTOUCHED;
    using Wide = std::array<wchar_t, 4>;
    EXPECT_EQ(widened({0x34, 0x12, 0x78}, 3), (Wide{0x1234, 0, FREE, FREE})) << "an odd byte";
    EXPECT_EQ(widened({0xff, 0xff, 0x80, 0x80}, 4), (Wide{0xffff, 0x8080, 0, FREE}));
    EXPECT_EQ(widened({0x00, 0x00, 0x41, 0x00}, 4), (Wide{0, L'A', 0, FREE})) << "a zero inside";
    for (const unsigned long len : {0UL, 1UL})
        EXPECT_EQ(widened({0x41, 0x00}, len), (Wide{0, FREE, FREE, FREE})) << len;
}

TEST(Unicode2Utf8Str, Text_EndsAtTheFirstZeroAndKeepsItsBlanks)
{
    Bytes padded = ucs2(u"王五");
    padded.resize(30, 0);
    EXPECT_EQ(toUtf8(padded), "王五");
    EXPECT_EQ(toUtf8(padded).size(), 6U);
    EXPECT_EQ(toUtf8(ucs2(u"AB  ")), "AB  ");
    EXPECT_EQ(toUtf8({0x41, 0x00, 0x00, 0x00, 0x42, 0x00}), "A");
    EXPECT_EQ(toUtf8({}), "");
    EXPECT_EQ(toUtf8({0x41}), "");
    EXPECT_EQ(toUtf8({0x00, 0x00, 0x42, 0x00}), "");
    EXPECT_EQ(toUtf8(ucs2(u"Aé㐀龥")), "Aé㐀龥");
}

TEST(Unicode2Utf8Str, LongInput_IsConvertedAsFarAsItsArrayGoes)
{
    const QString text(2000, QChar(0x9fa5));
    for (const int length : {61, 2000})
        EXPECT_EQ(toUtf8(ucs2(text.left(length).toStdU16String())), text.left(61).toStdString())
            << length;
}

TEST(Unicode2Utf8Str, SurrogateHalves_ComeOutAsQtTreatsThem)
{
    const uint half[] = {0xd800, 0x41, 0};
    EXPECT_EQ(toUtf8({0x00, 0xd8, 0x41, 0x00}), QString::fromUcs4(half).toUtf8().toStdString());
}

TEST(Trim, BlanksAndTabsAtBothEnds_AreRemovedAndNothingElse)
{
    for (const auto &[text, trimmed] : {std::pair(" \t男\t ", "男"),
                                        {"\ta \t b ", "a \t b"},
                                        {"男", "男"},
                                        {"\r\n", "\r\n"},
                                        {"\u3000", "\u3000"},
                                        {" \n ", "\n"},
                                        {"   ", ""},
                                        {"\t", ""},
                                        {"", ""}})
        EXPECT_EQ(CCommon::trim(text), trimmed);
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

TEST(IconvEx, OutputTooSmallOrInvalidSequence_KeepsTheWholeCharactersBefore)
{
    EXPECT_EQ(convert("UTF-16LE", {"\x4d\x51\x4d\x51", 4}, "UTF-8", 5), "免");
    EXPECT_EQ(convert("UTF-16LE", {"\x4d\x51\x4d\x51", 4}, "UTF-8", 0), "");
    EXPECT_EQ(convert("UTF-8", std::string("ab\xff") + "cd", "UTF-8", 64), "ab");
}

TEST(IconvEx, NegativeLength_DoesNothing)
{
    std::string input = "abc";
    std::string output = "####";
    CCommon::iconv_ex("UTF-8", input.data(), -1, "UTF-8", output.data(), 4);
    CCommon::iconv_ex("UTF-8", input.data(), 3, "UTF-8", output.data(), -1);
    EXPECT_EQ(output, "####");
}
