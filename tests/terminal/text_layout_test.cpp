#include <gtest/gtest.h>

#include "apps/terminal/text_layout.h"

using namespace app;

TEST(DisplayWidth, Text_TakesAsManyColumnsAsATerminalGivesIt)
{
    const uint ideographBeyondTheFirstPlane = 0x20BB7; // the variant of 吉 found in names
    const struct {
        QString text;
        int columns;
    } cases[] = {
        {"", 0},
        {"Card 12-3", 9},
        {"居民身份证", 10},
        {QChar(0x4E00), 2}, // the first ideograph
        {QChar(0x9FFF), 2}, // the last one
        {QString::fromUcs4(&ideographBeyondTheFirstPlane, 1), 2},
        {"（Ａ）：", 8},
        {QChar(0x3000), 2}, // the ideographic space
        {QChar(0xFF71), 1}, // half-width katakana A
        {QChar(0x10FF), 1}, // before the first wide block
        {QChar(0x1160 - 1), 2},
        {QChar(0x303F), 1}, // half-fill space
        {"古丽·买买提", 11},
        {QStringLiteral("e\u0301"), 1}, // a combining mark
    };
    for (const auto &c : cases)
        EXPECT_EQ(displayWidth(c.text), c.columns) << c.text.toStdString();
}

TEST(Padded, Text_IsFilledByColumnsNotByCharactersAndNeverCut)
{
    EXPECT_EQ(padded("汉", 4), "汉  ");
    EXPECT_EQ(padded("abcdef", 3), "abcdef");
}

TEST(Printable, WhatSteersATerminal_IsSpelledOutAndAllElseStays)
{
    EXPECT_EQ(printable(QStringLiteral("a\u001B[2Jb\n\u009Bc\u007F")),
              "a\\u001B[2Jb\\u000A\\u009Bc\\u007F");
    EXPECT_EQ(printable(QStringLiteral("a\u202Eb")), "a\\u202Eb"); // turns the writing direction
    EXPECT_EQ(printable(QStringLiteral("\u2028\u2029")), "\\u2028\\u2029"); // separators
    const QString chinese = "阿依古丽·艾山，（示例）";
    EXPECT_EQ(printable(chinese), chinese);
}

TEST(AlignedTable, Columns_BeginTogetherAndLinesEndWithoutSpaces)
{
    EXPECT_EQ(alignedTable({{"汉族", "x"}, {"abcdef", "y"}}), "汉族    x\nabcdef  y\n");
    EXPECT_EQ(alignedTable({{"a", "b  "}, {"c", ""}}), "a  b\nc\n");
    EXPECT_EQ(alignedTable({{"longer"}, {"a", "b"}}), "longer\na       b\n");
    EXPECT_EQ(alignedTable({{"a\nb", "c"}}), "a\\u000Ab  c\n");
}

TEST(Wrapped, Text_IsBrokenWhereALineMayEnd)
{
    const struct {
        const char *text;
        int width;
        int indent;
        const char *lines;
    } cases[] = {
        {"one two", 7, 4, "one two"},
        {"one two three four", 9, 2, "one two\n  three\n  four"},
        {"a bcdefghij k", 4, 0, "a\nbcdefghij\nk"},
        {"请将证件平放在读卡器上", 9, 2, "请将证件\n  平放在读\n  卡器上"},
        // Words and paths are kept whole in Chinese text.
        {"系统没有libusb无法", 12, 0, "系统没有\nlibusb无法"},
        {"安装 Qt 后", 6, 0, "安装\nQt 后"},
        {"文件 /home/用户/证件：没有空间", 10, 0, "文件\n/home/用户/证件：\n没有空间"},
        // Punctuation stays with the text that it ends or begins.
        {"没有证件，请放好。", 8, 0, "没有证\n件，请放\n好。"},
        {"代码（一）", 6, 0, "代码\n（一）"},
        {"请按“读卡”键", 5, 0, "请按\n“读\n卡”键"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(wrapped(c.text, c.width, c.indent).toStdString(), c.lines);
}
