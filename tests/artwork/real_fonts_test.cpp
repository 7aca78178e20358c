#include "font_choice.h"

#include <gtest/gtest.h>

namespace
{

TEST(RealFonts, TextsAreDrawnWithTheFamilyItselfWhereItIsInstalled)
{
    EXPECT_EQ(facesOfTexts(QStringLiteral("江南省云溪市 1984.06.05")),
              QStringList{"STXihei Regular"});
}

TEST(RealFonts, TheNumberIsDrawnWithTheFamilyItselfWhereItIsInstalled)
{
    EXPECT_EQ(facesOfNumber(QStringLiteral("99000019871231737X")), QStringList{"黑体 Bold"});
}

} // namespace
