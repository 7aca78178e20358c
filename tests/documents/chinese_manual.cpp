#include "tests/documents/chinese_manual.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QStringList>

#include "tests/support/generated_text.h"

namespace
{

/** A line of mdoc(7) that a part has, without its text, in the macros of man(7). */
QString manMacro(const QString &line)
{
    const QString rest = line.mid(4);
    if (line.startsWith(QStringLiteral(".Ss ")))
        return QStringLiteral(".SS ") + rest;
    if (line.startsWith(QStringLiteral(".Dl ")))
        return QStringLiteral(".RS 4\n%1\n.RE").arg(rest);
    if (line == QLatin1String(".Pp"))
        return QStringLiteral(".PP");
    QString tag = rest;
    tag.replace(QLatin1Char('-'), QStringLiteral("\\-"));
    tag.replace(QStringLiteral(" ,"), QStringLiteral(","));
    tag.replace(QRegularExpression(QStringLiteral("\\bOp Ar (.+)$")),
                QStringLiteral("[\\fI\\1\\fR]"));
    tag.replace(QRegularExpression(QStringLiteral("\\bAr (.+)$")), QStringLiteral("\\fI\\1\\fR"));
    tag.replace(QRegularExpression(QStringLiteral("\\bFl ([^\\s,]+)")),
                QStringLiteral("\\fB\\-\\1\\fR"));
    tag.replace(QRegularExpression(QStringLiteral("\\b(?:Cm|Ev) (\\S+)")),
                QStringLiteral("\\fB\\1\\fR"));
    return QStringLiteral(".TP\n") + tag;
}

/** A line of text; none is broken at a hyphen, since those are parts of names. */
QString manText(QString line)
{
    line.replace(QStringLiteral("\\-"), QStringLiteral("-"));
    return line.replace(QLatin1Char('-'), QStringLiteral("\\-"));
}

/** The tags of a part in the macros of man(7), each with its heading before it. */
QStringList tagsOf(const QString &part)
{
    static const QRegularExpression line(QStringLiteral("^\\.(SS|TP)[ \\n](.*)$"),
                                         QRegularExpression::MultilineOption);
    QStringList tags;
    QString heading;
    auto found = line.globalMatch(part);
    while (found.hasNext()) {
        const auto match = found.next();
        if (match.captured(1) == QLatin1String("SS"))
            heading = match.captured(2) + QStringLiteral(": ");
        else
            tags << heading + match.captured(2);
    }
    return tags;
}

/** What tags and their headings say in Chinese where they have words. */
QString withChineseWords(QString part)
{
    const struct {
        const char *english;
        const char *chinese;
    } words[] = {{".SS Options of every command\n", ".SS 各命令共有的选项\n"},
                 {".SS Faults\n", ".SS 故障\n"},
                 {" or ", " 或 "}};
    for (const auto &word : words)
        part.replace(QString::fromUtf8(word.english), QString::fromUtf8(word.chinese));
    return part;
}

} // namespace

QString inManMacros(const QString &mdoc)
{
    QString text;
    for (const QString &line : mdoc.split(QLatin1Char('\n'))) {
        if (line.startsWith(QStringLiteral(".Bl")) || line == QLatin1String(".El"))
            continue;
        text += (line.startsWith(QLatin1Char('.')) ? manMacro(line) : manText(line)) +
                QLatin1Char('\n');
    }
    text.chop(1);
    return text;
}

void expectSameTags(const QString &page, const QString &name, const QString &mdoc)
{
    const QStringList tags = tagsOf(partOfPage(page, name));
    const QStringList expected = tagsOf(withChineseWords(inManMacros(mdoc)));
    EXPECT_EQ(tags.join(QLatin1Char('\n')).toStdString(),
              expected.join(QLatin1Char('\n')).toStdString())
        << page.toStdString() << " (-) differs from the programs (+)";
}
