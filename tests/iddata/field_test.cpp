// CIdData::DecodeIDBase: one text field of the raw card record as UTF-8.

#include "tests/iddata/decoder.h"
#include "tests/iddata/guarded_bytes.h"
#include "tests/support/ucs2.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

namespace
{

using Bytes = std::vector<unsigned char>;

constexpr unsigned char UNTOUCHED = 0x5a;

/** What is in an output of `capacity` bytes, zeroed before, once `field` was decoded into it. */
std::string decoded(const Bytes &field, int capacity)
{
    std::string text;
    for (const auto side : GUARD_SIDES) {
        GuardedBytes in(field.size(), side);
        std::copy(field.begin(), field.end(), in.begin());
        GuardedBytes out(static_cast<std::size_t>(capacity), side);
        Decoder decoder;
        decoder->DecodeIDBase(in.data(), 0, static_cast<int>(field.size()),
                              reinterpret_cast<char *>(out.data()), capacity);
        text.assign(out.begin(), out.end());
    }
    return text;
}

/** The same up to the first zero. */
std::string textOf(const Bytes &field, int capacity = 200)
{
    const std::string bytes = decoded(field, capacity);
    return bytes.substr(0, bytes.find('\0'));
}

/** `unit` between a and b as the decoder has it, in plain memory: fast enough for all characters.
 */
std::string decodedBetweenLetters(char16_t unit)
{
    Bytes field = ucs2({u'a', unit, u'b'});
    char out[8] = {};
    Decoder decoder;
    decoder->DecodeIDBase(field.data(), 0, static_cast<int>(field.size()), out, sizeof(out));
    return out;
}

struct Character {
    char16_t unit;
    const char *utf8;
};

constexpr Character ONE_BYTE = {u'A', "A"};
constexpr Character TWO_BYTES = {u'\u00e9', "\xc3\xa9"};
constexpr Character THREE_BYTES = {u'\u4e2d', "\xe4\xb8\xad"};

} // namespace

TEST(Field, EveryCapacityAndMixture_KeepsTheLongestPrefixOfWholeCharacters)
{
    const std::vector<std::vector<Character>> mixtures = {
        {ONE_BYTE},
        {TWO_BYTES},
        {THREE_BYTES},
        {ONE_BYTE, TWO_BYTES},
        {ONE_BYTE, THREE_BYTES},
        {TWO_BYTES, THREE_BYTES},
        {THREE_BYTES, TWO_BYTES},
        {ONE_BYTE, ONE_BYTE, THREE_BYTES},
        {THREE_BYTES, ONE_BYTE, TWO_BYTES},
        {TWO_BYTES, TWO_BYTES, ONE_BYTE, THREE_BYTES, THREE_BYTES},
    };
    constexpr int UNITS = 60;
    for (const auto &mixture : mixtures) {
        for (int capacity = 1; capacity <= 101; ++capacity) {
            for (std::size_t phase = 0; phase < mixture.size(); ++phase) {
                std::u16string text;
                std::string kept;
                bool full = false;
                for (std::size_t i = 0; i < UNITS; ++i) {
                    const Character &character = mixture[(i + phase) % mixture.size()];
                    text += character.unit;
                    full = full || kept.size() + std::strlen(character.utf8) >
                                       static_cast<std::size_t>(capacity);
                    if (!full)
                        kept += character.utf8;
                }
                std::string expected = kept;
                expected.resize(static_cast<std::size_t>(capacity), '\0');
                ASSERT_EQ(decoded(ucs2(text), capacity), expected)
                    << "capacity " << capacity << ", text beginning with " << kept;
            }
        }
    }
}

TEST(Field, EveryCharacterOfTheCard_IsDecodedAsUtf8)
{
    for (unsigned unit = 1; unit <= 0xffff; ++unit) {
        if (unit >= 0xd800 && unit <= 0xdfff)
            continue;
        std::string expected;
        if (unit < 0x80) {
            expected += static_cast<char>(unit);
        } else if (unit < 0x800) {
            expected += static_cast<char>(0xc0 | (unit >> 6));
            expected += static_cast<char>(0x80 | (unit & 0x3f));
        } else {
            expected += static_cast<char>(0xe0 | (unit >> 12));
            expected += static_cast<char>(0x80 | ((unit >> 6) & 0x3f));
            expected += static_cast<char>(0x80 | (unit & 0x3f));
        }
        ASSERT_EQ(decodedBetweenLetters(static_cast<char16_t>(unit)), 'a' + expected + 'b') << unit;
    }
}

TEST(Field, UnusualCharacters_AreDecodedAsTheyAre)
{
    const struct {
        Bytes field;
        const char *text;
        int capacity = 200;
    } cases[] = {
        {ucs2(u"  A  "), "  A  "},
        {ucs2(u"\ufeffA"), "\xef\xbb\xbf\x41"}, // the first bytes of a byte order mark
        // Taken for a mark, this would swap the bytes of all that follows.
        {ucs2(u"\ufffeA"), "\xef\xbf\xbe\x41"},
        // A pair of surrogates is one character of four bytes; a lone one ends the text.
        {ucs2(u"\U0002000bA"), "\xf0\xa0\x80\x8b\x41"},
        {ucs2(u"A\U0002000b"), "A", 4},
        {ucs2({u'A', 0xd840, u'B'}), "A"},
        {ucs2({u'A', 0xdc0b, u'B'}), "A"},
        {ucs2({u'A', 0xd840}), "A"},
        {ucs2({0xdc0b, u'B'}), ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(textOf(c.field, c.capacity), c.text);
    EXPECT_EQ(decoded(ucs2({u'A', u'\0', u'B'}), 5), std::string("A\0B\0\0", 5));
}

TEST(Field, Terminator_IsWrittenWhereThereIsRoom)
{
    const Bytes field = ucs2(u"AB");
    for (const auto side : GUARD_SIDES) {
        GuardedBytes in(field.size(), side);
        std::copy(field.begin(), field.end(), in.begin());
        for (int capacity = 0; capacity <= 4; ++capacity) {
            GuardedBytes out(4, side, UNTOUCHED);
            Decoder decoder;
            decoder->DecodeIDBase(in.data(), 0, 4, reinterpret_cast<char *>(out.data()), capacity);
            const char written[] = {'A', 'B', '\0'};
            for (int i = 0; i < 4; ++i)
                EXPECT_EQ(out.data()[i], i < std::min(capacity, 3) ? written[i] : UNTOUCHED)
                    << "capacity " << capacity << ", byte " << i;
        }
    }
}

TEST(Field, CapacityNegative_WritesNothing)
{
    Bytes field = ucs2(u"AB");
    char out = UNTOUCHED;
    Decoder decoder;
    decoder->DecodeIDBase(field.data(), 0, 4, &out, -1);
    decoder->DecodeIDBase(field.data(), 0, 4, &out, -2147483647 - 1);
    EXPECT_EQ(out, UNTOUCHED);
}

TEST(Field, Offset_IsCountedInBytes)
{
    Bytes bytes = ucs2(u"ABCD");
    char out[8] = {};
    Decoder decoder;
    decoder->DecodeIDBase(bytes.data(), 2, 4, out, sizeof(out));
    EXPECT_STREQ(out, "BC");
}

TEST(Field, NullPointers_DoNothing)
{
    Bytes field = ucs2(u"AB");
    char out[] = "#";
    Decoder decoder;
    decoder->DecodeIDBase(field.data(), 0, 4, nullptr, 10);
    decoder->DecodeIDBase(nullptr, 0, 4, out, sizeof(out));
    decoder->DecodeIDBase(nullptr, 0, 4, nullptr, 10);
    // Nothing is copied, so nothing is too long.
    decoder->DecodeIDBase(nullptr, 0, 1000, out, sizeof(out));
    EXPECT_STREQ(out, "#");
}

TEST(Field, LongestAndEmpty_AreDecoded)
{
    EXPECT_EQ(textOf(Bytes(), 3), "");
    for (const std::size_t size : {std::size_t{127}, std::size_t{128}, std::size_t{129}}) {
        Bytes field = ucs2(std::u16string(65, u'x'));
        field.resize(size);
        // Half a character at the end is completed by the zero that follows the field.
        EXPECT_EQ(textOf(field), std::string((size + 1) / 2, 'x')) << size;
    }
}

TEST(FieldDeathTest, LengthBeyondTheWorkBuffer_AbortsTheProcess)
{
    std::vector<unsigned char> field(1000);
    const auto decode = [&field](int len) {
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        char out[8] = {};
        Decoder decoder;
        decoder->DecodeIDBase(field.data(), 0, len, out, sizeof(out));
    };
    for (const int len : {130, 131, 1000, 2147483647, -1, -2147483647 - 1})
        EXPECT_EXIT(decode(len), testing::KilledBySignal(SIGABRT),
                    "a field of " + std::to_string(len) + " bytes");
}
