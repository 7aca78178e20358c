// The three ways of wrapping text.

#include "render/tools.h"

#include <gmock/gmock.h>

#include <QString>
#include <QStringList>

namespace
{

using testing::ElementsAre;

std::vector<std::string> wrapped(const QString &text, int n)
{
    QString copy = text;
    std::vector<std::string> lines;
    for (const QString &line : Tools::autoWrap(copy, n))
        lines.push_back(line.toStdString());
    EXPECT_EQ(copy, text) << "the argument is only read";
    return lines;
}

std::vector<std::string> wrappedByWidth(const QString &text)
{
    QString copy = text;
    std::vector<std::string> lines;
    for (const QString &line : Tools::autoWrapEx(copy))
        lines.push_back(line.toStdString());
    EXPECT_EQ(copy, text) << "the argument is only read";
    return lines;
}

QString ideographs(int count)
{
    return {count, QChar(0x4e2d)};
}

std::string some(int count)
{
    return ideographs(count).toStdString();
}

QString letters(int count)
{
    return {count, QLatin1Char('x')};
}

} // namespace

TEST(AutoWrap, Text_IsCutIntoSoManyUtf16Units)
{
    EXPECT_THAT(wrapped("ABCDEFGHIJKL", 11), ElementsAre("ABCDEFGHIJK", "L"));
    EXPECT_THAT(wrapped(ideographs(23), 11), ElementsAre(some(11), some(11), some(1)));
    EXPECT_THAT(wrapped(letters(50), 25),
                ElementsAre(letters(25).toStdString(), letters(25).toStdString()));
}

TEST(AutoWrap, TextThatFitsOrHasNoLength_StaysOneElement)
{
    for (const char *text : {"", "A", "ABCDEFGHIJK"})
        EXPECT_THAT(wrapped(text, 11), ElementsAre(text));
    for (const int length : {0, -5})
        EXPECT_THAT(wrapped("ABC", length), ElementsAre("ABC"));
}

TEST(AutoWrapEx, Text_IsBrokenByWidth)
{
    EXPECT_THAT(wrappedByWidth(QString()), ElementsAre(""));
    EXPECT_THAT(wrappedByWidth(ideographs(10)), ElementsAre(some(10)));
    EXPECT_THAT(wrappedByWidth(ideographs(11)), ElementsAre(some(11), ""));
    EXPECT_THAT(wrappedByWidth(ideographs(30)), ElementsAre(some(11), some(11), some(8)));
    EXPECT_THAT(wrappedByWidth(ideographs(35)), ElementsAre(some(11), some(11), some(11), some(2)));
    EXPECT_THAT(wrappedByWidth(letters(21)), ElementsAre(letters(21).toStdString()));
    EXPECT_THAT(wrappedByWidth(letters(22)), ElementsAre(letters(21).toStdString(), "x"));
    EXPECT_THAT(wrappedByWidth("1" + ideographs(20)), ElementsAre("1" + some(10), some(10)));
    // An early break at the very end is left out on the first line only.
    EXPECT_THAT(wrappedByWidth(ideographs(11) + letters(1) + ideographs(10)),
                ElementsAre(some(11), "x" + some(10), ""));
}

TEST(AutoWrapEx, BothBlocksOfIdeographs_CountOneAndTheirNeighboursHalf)
{
    for (const int code : {0x3400, 0x4dbf, 0x4e00, 0x9fff})
        EXPECT_EQ(wrappedByWidth(QString(12, QChar(code))).size(), 2U) << code;
    for (const int code : {0x33ff, 0x4dc0, 0x4dff, 0xa000, 0x3002, 0xff08})
        EXPECT_EQ(wrappedByWidth(QString(12, QChar(code))).size(), 1U) << code;
}

TEST(AutoWrapRichText, Paragraphs_BecomeOneElementEach)
{
    QString html = QStringLiteral("<p>first <b>bold</b></p><p>second</p><p>third &amp; last</p>");
    const QString before = html;
    const QStringList lines = Tools::autoWrap(html, QStringLiteral("黑体"), 14, 10);
    EXPECT_EQ(lines, (QStringList{QStringLiteral("first bold"), QStringLiteral("second"),
                                  QStringLiteral("third & last")}));
    EXPECT_EQ(html, before);
}

TEST(AutoWrapRichText, LongParagraph_IsNotBroken)
{
    QString html = letters(500);
    EXPECT_EQ(Tools::autoWrap(html, QStringLiteral("黑体"), 14, 10), QStringList(letters(500)));
}

TEST(AutoWrapRichText, EmptyText_GivesOneEmptyElement)
{
    QString html;
    EXPECT_EQ(Tools::autoWrap(html, QStringLiteral("黑体"), 14, 10), QStringList(QString()));
}
