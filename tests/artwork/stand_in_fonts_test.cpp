#include "font_choice.h"

#include <gtest/gtest.h>

namespace
{

const QStringList regular{"Noto Sans Mono CJK SC Regular"};
const QStringList bold{"Noto Sans Mono CJK SC Bold"};

TEST(StandInFonts, TextsAreDrawnWithTheRegularFace)
{
    EXPECT_EQ(facesOfTexts(QStringLiteral("江南省云溪市公安局")), regular);
}

TEST(StandInFonts, DigitsAndLatinLettersComeFromTheSameFaceAsTheChinese)
{
    EXPECT_EQ(facesOfTexts(QStringLiteral("女 / F 1984.06.05 - 长期 BERGSTROM, INGRID")), regular);
}

TEST(StandInFonts, RareCharactersOfNamesComeFromTheSameFace)
{
    EXPECT_EQ(facesOfTexts(QStringLiteral("㐂㛃䶮㙟㵲龦·")), regular);
}

TEST(StandInFonts, TheNumberIsDrawnWithTheBoldFace)
{
    EXPECT_EQ(facesOfNumber(QStringLiteral("99000019871231737X")), bold);
}

} // namespace
