#include <gtest/gtest.h>

#include "common/texts.h"

TEST(FilledIn, Markers_AreFilledInOnceWhereverTheyStandInThePattern)
{
    EXPECT_EQ(filledIn(QStringLiteral("%2 of %1"), QString("a"), QLatin1String("b")), "b of a");
    EXPECT_EQ(filledIn(QStringLiteral("%1%1, %2"), "a", "b"), "aa, b");
    EXPECT_EQ(filledIn(QStringLiteral("%1 and %2"), "%2", "%1"), "%2 and %1");
    EXPECT_EQ(filledIn(QStringLiteral("%10"), "a", "b"), "a0");
    EXPECT_EQ(filledIn(QString(), "a", "b"), "");
}

TEST(FilledIn, PercentSign_WithoutItsText_Stays)
{
    EXPECT_EQ(filledIn(QStringLiteral("100% of %3, %0, %1 and %2%"), "a", "b"),
              "100% of %3, %0, a and b%");
}

TEST(SplitAt, EmptyParts_AreKept)
{
    EXPECT_EQ(splitAt(',', "ab"), QStringList("ab"));
    EXPECT_EQ(splitAt(',', QString()), QStringList(QString()));
    EXPECT_EQ(splitAt(',', ",a,,b,"), QStringList({"", "a", "", "b", ""}));
}
