#include <gtest/gtest.h>

#include "common/texts.h"

TEST(FilledIn, Texts_OfSeveralKinds_StandInTheirPlaces)
{
    EXPECT_EQ(filledIn(QStringLiteral("%2 of %1"), QString("a"), QLatin1String("b")), "b of a");
}

TEST(FilledIn, Marker_ThatStandsTwice_IsFilledInTwice)
{
    EXPECT_EQ(filledIn(QStringLiteral("%1%1, %2"), "a", "b"), "aa, b");
}

TEST(FilledIn, Marker_WithinAText_Stays)
{
    EXPECT_EQ(filledIn(QStringLiteral("%1 and %2"), "%2", "%1"), "%2 and %1");
}

TEST(FilledIn, PercentSign_WithoutItsText_Stays)
{
    EXPECT_EQ(filledIn(QStringLiteral("100% of %3, %0, %1 and %2%"), "a", "b"),
              "100% of %3, %0, a and b%");
}

TEST(FilledIn, DigitAfterAMarker_Stays)
{
    EXPECT_EQ(filledIn(QStringLiteral("%10"), "a", "b"), "a0");
}

TEST(FilledIn, EmptyPattern_IsEmpty)
{
    EXPECT_EQ(filledIn(QString(), "a", "b"), "");
}

TEST(SplitAt, Text_WithoutTheSeparator_IsOnePart)
{
    EXPECT_EQ(splitAt(',', "ab"), QStringList("ab"));
    EXPECT_EQ(splitAt(',', QString()), QStringList(QString()));
}

TEST(SplitAt, EmptyParts_AreKept)
{
    EXPECT_EQ(splitAt(',', ",a,,b,"), QStringList({"", "a", "", "b", ""}));
}
