// CIdData::parseIDType: the kind of document by the letter at offset 248.

#include "tests/iddata/decoder.h"
#include "tests/iddata/text_block.h"
#include "tests/support/message_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t LETTER = 248;
constexpr auto UNTOUCHED = static_cast<ID_TYPE>(77);

ID_TYPE kindOf(TextBlock &block)
{
    Decoder decoder;
    const MessageLog log;
    ID_TYPE type = UNTOUCHED;
    EXPECT_TRUE(decoder->parseIDType(block.data(), &type));
    EXPECT_THAT(log.texts(), IsEmpty());
    return type;
}

} // namespace

TEST(KindOfDocument, NumbersOfTheKinds_AreFixed)
{
    EXPECT_EQ(ID_TYPE_CN, 0);
    EXPECT_EQ(ID_TYPE_FOREIGN_2017, 1);
    EXPECT_EQ(ID_TYPE_FOREIGN_NEW, 2);
    EXPECT_EQ(ID_TYPE_HMT, 3);
    EXPECT_EQ(sizeof(ID_TYPE), 4U);
}

TEST(KindOfDocument, EveryCharacter_GivesItsKindOrTheResidentCard)
{
    TextBlock block;
    for (int character = 0; character <= 0xffff; ++character) {
        block.put(LETTER, std::u16string(1, static_cast<char16_t>(character)));
        const int expected = character == 'I' ? 1 : character == 'Y' ? 2 : character == 'J' ? 3 : 0;
        ASSERT_EQ(kindOf(block), expected) << character;
    }
}

TEST(KindOfDocument, LetterElsewhere_IsNotLookedAt)
{
    for (std::size_t offset = 0; offset < TextBlock::SIZE; offset += 2) {
        if (offset == LETTER)
            continue;
        TextBlock block;
        block.put(offset, u"Y");
        EXPECT_EQ(kindOf(block), ID_TYPE_CN) << offset;
    }
}

TEST(KindOfDocument, BlockBetweenGuardPages_IsReadInside)
{
    for (const auto side : GUARD_SIDES) {
        TextBlock block(side);
        block.put(LETTER, u"J   ");
        EXPECT_EQ(kindOf(block), ID_TYPE_HMT);
    }
}

TEST(KindOfDocument, NullPointers_AreLoggedAndLeaveTheKind)
{
    Decoder decoder;
    TextBlock block;
    const MessageLog log;
    ID_TYPE type = UNTOUCHED;
    EXPECT_FALSE(decoder->parseIDType(nullptr, &type));
    EXPECT_FALSE(decoder->parseIDType(block.data(), nullptr));
    EXPECT_FALSE(decoder->parseIDType(nullptr, nullptr)) << "the kind is looked at first";
    EXPECT_EQ(type, UNTOUCHED);
    EXPECT_THAT(log.debugTexts(),
                ElementsAre("byData parameter invalid!", "pIDType parameter invalid!",
                            "pIDType parameter invalid!"));
}
