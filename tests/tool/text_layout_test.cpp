#include <gtest/gtest.h>

#include "apps/process/text_layout.h"

using namespace app;

TEST(DisplayWidth, LatinTextTakesOneColumnPerCharacter)
{
    EXPECT_EQ(displayWidth(QStringLiteral("Card 12-3")), 9);
}

TEST(DisplayWidth, EmptyTextTakesNone)
{
    EXPECT_EQ(displayWidth(QString()), 0);
}

TEST(DisplayWidth, IdeographsTakeTwoColumns)
{
    EXPECT_EQ(displayWidth(QString::fromUtf8("居民身份证")), 10);
}

TEST(DisplayWidth, FirstAndLastIdeographTakeTwoColumns)
{
    EXPECT_EQ(displayWidth(QString(QChar(0x4E00))), 2);
    EXPECT_EQ(displayWidth(QString(QChar(0x9FFF))), 2);
}

TEST(DisplayWidth, FullWidthFormsAndIdeographicSpaceTakeTwoColumns)
{
    EXPECT_EQ(displayWidth(QString::fromUtf8("（Ａ）：")), 8);
    EXPECT_EQ(displayWidth(QString(QChar(0x3000))), 2);
}

TEST(DisplayWidth, HalfWidthFormsTakeOneColumn)
{
    EXPECT_EQ(displayWidth(QString(QChar(0xFF71))), 1); // half-width katakana A
}

TEST(DisplayWidth, CharactersBesideWideBlocksTakeOneColumn)
{
    EXPECT_EQ(displayWidth(QString(QChar(0x10FF))), 1);
    EXPECT_EQ(displayWidth(QString(QChar(0x1160 - 1))), 2);
    EXPECT_EQ(displayWidth(QString(QChar(0x303F))), 1); // half-fill space
}

TEST(DisplayWidth, IdeographsBeyondTheFirstPlaneTakeTwoColumns)
{
    const uint codePoint = 0x20BB7; // the variant of 吉 found in names
    EXPECT_EQ(displayWidth(QString::fromUcs4(&codePoint, 1)), 2);
}

TEST(DisplayWidth, MiddleDotOfNamesTakesOneColumn)
{
    EXPECT_EQ(displayWidth(QString::fromUtf8("古丽·买买提")), 11);
}

TEST(DisplayWidth, CombiningMarksTakeNone)
{
    EXPECT_EQ(displayWidth(QStringLiteral("e\u0301")), 1);
}

TEST(Padded, ShortTextIsFilledByColumnsNotByCharacters)
{
    EXPECT_EQ(padded(QString::fromUtf8("汉"), 4), QString::fromUtf8("汉  "));
}

TEST(Padded, LongTextIsLeftAsItIs)
{
    EXPECT_EQ(padded(QStringLiteral("abcdef"), 3), QStringLiteral("abcdef"));
}

TEST(Printable, ControlCharactersAreSpelledOut)
{
    EXPECT_EQ(printable(QStringLiteral("a\u001B[2Jb\n\u009Bc\u007F")),
              QStringLiteral("a\\u001B[2Jb\\u000A\\u009Bc\\u007F"));
}

TEST(Printable, MarksThatTurnTheWritingDirectionAreSpelledOut)
{
    EXPECT_EQ(printable(QStringLiteral("a\u202Eb")), QStringLiteral("a\\u202Eb"));
}

TEST(Printable, LineAndParagraphSeparatorsAreSpelledOut)
{
    EXPECT_EQ(printable(QStringLiteral("\u2028\u2029")), QStringLiteral("\\u2028\\u2029"));
}

TEST(Printable, ChineseTextStaysAsItIs)
{
    const QString text = QString::fromUtf8("阿依古丽·艾山，（示例）");
    EXPECT_EQ(printable(text), text);
}

TEST(AlignedTable, ColumnsAfterChineseTextBeginAtTheSameColumn)
{
    const QString table = alignedTable({{QString::fromUtf8("汉族"), QStringLiteral("x")},
                                        {QStringLiteral("abcdef"), QStringLiteral("y")}});
    EXPECT_EQ(table, QString::fromUtf8("汉族    x\nabcdef  y\n"));
}

TEST(AlignedTable, LinesEndWithoutSpaces)
{
    const QString table = alignedTable(
        {{QStringLiteral("a"), QStringLiteral("b  ")}, {QStringLiteral("c"), QString()}});
    EXPECT_EQ(table, QStringLiteral("a  b\nc\n"));
}

TEST(AlignedTable, CellWithLineBreakStaysOnItsLine)
{
    EXPECT_EQ(alignedTable({{QStringLiteral("a\nb"), QStringLiteral("c")}}),
              QStringLiteral("a\\u000Ab  c\n"));
}

TEST(AlignedTable, RowsOfDifferentLengthsKeepTheirColumns)
{
    EXPECT_EQ(
        alignedTable({{QStringLiteral("longer")}, {QStringLiteral("a"), QStringLiteral("b")}}),
        QStringLiteral("longer\na       b\n"));
}

TEST(Wrapped, TextIsBrokenBetweenWordsAndIndented)
{
    EXPECT_EQ(wrapped(QStringLiteral("one two three four"), 9, 2),
              QStringLiteral("one two\n  three\n  four"));
}

TEST(Wrapped, WordLongerThanTheLineGetsItsOwn)
{
    EXPECT_EQ(wrapped(QStringLiteral("a bcdefghij k"), 4, 0), QStringLiteral("a\nbcdefghij\nk"));
}

TEST(Wrapped, ChineseText_IsBrokenBetweenIdeographs)
{
    EXPECT_EQ(wrapped(QStringLiteral("请将证件平放在读卡器上"), 9, 2),
              QStringLiteral("请将证件\n  平放在读\n  卡器上"));
}

TEST(Wrapped, LatinWordInChineseText_IsKeptWhole)
{
    EXPECT_EQ(wrapped(QStringLiteral("系统没有libusb无法"), 12, 0),
              QStringLiteral("系统没有\nlibusb无法"));
    EXPECT_EQ(wrapped(QStringLiteral("安装 Qt 后"), 6, 0), QStringLiteral("安装\nQt 后"));
}

TEST(Wrapped, ChinesePunctuation_StaysWithTheTextThatItEndsOrBegins)
{
    EXPECT_EQ(wrapped(QStringLiteral("没有证件，请放好。"), 8, 0),
              QStringLiteral("没有证\n件，请放\n好。"));
    EXPECT_EQ(wrapped(QStringLiteral("代码（一）"), 6, 0), QStringLiteral("代码\n（一）"));
    EXPECT_EQ(wrapped(QStringLiteral("请按“读卡”键"), 5, 0), QStringLiteral("请按\n“读\n卡”键"));
}

TEST(Wrapped, PathWithIdeographs_IsKeptWholeUpToPunctuation)
{
    EXPECT_EQ(wrapped(QStringLiteral("文件 /home/用户/证件：没有空间"), 10, 0),
              QStringLiteral("文件\n/home/用户/证件：\n没有空间"));
}

TEST(Wrapped, TextThatFitsExactlyStaysOnOneLine)
{
    EXPECT_EQ(wrapped(QStringLiteral("one two"), 7, 4), QStringLiteral("one two"));
}
