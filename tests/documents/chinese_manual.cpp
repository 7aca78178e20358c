#include "tests/documents/chinese_manual.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QStringList>

#include "tests/support/generated_text.h"

namespace
{

/** The headings of a part; a command's is its name. */
QString chineseHeading(const QString &english)
{
    if (english == QLatin1String("Options of every command"))
        return QStringLiteral("各命令共有的选项");
    return english == QLatin1String("Faults") ? QStringLiteral("故障") : english;
}

/** A line of text; none is broken at a hyphen, since those are parts of names. */
QString manText(QString line)
{
    line.replace(QStringLiteral("\\-"), QStringLiteral("-"));
    return line.replace(QLatin1Char('-'), QStringLiteral("\\-"));
}

/** A line of mdoc(7) that a part has, without its text, in the macros of man(7). */
QString manMacro(const QString &line)
{
    const QString rest = line.mid(4);
    if (line.startsWith(QStringLiteral(".Ss ")))
        return QStringLiteral(".SS ") + chineseHeading(rest);
    if (line.startsWith(QStringLiteral(".Dl ")))
        return QStringLiteral(".RS 4\n%1\n.RE").arg(manText(rest));
    if (line == QLatin1String(".Pp"))
        return QStringLiteral(".PP");
    QString tag = rest;
    tag.replace(QLatin1Char('-'), QStringLiteral("\\-"));
    tag.replace(QStringLiteral(" ,"), QStringLiteral(","));
    tag.replace(QStringLiteral(" or "), QStringLiteral(" 或 "));
    tag.replace(QRegularExpression(QStringLiteral("\\bOp Ar (.+)$")),
                QStringLiteral("[\\fI\\1\\fR]"));
    tag.replace(QRegularExpression(QStringLiteral("\\bAr (.+)$")), QStringLiteral("\\fI\\1\\fR"));
    tag.replace(QRegularExpression(QStringLiteral("\\bFl ([^\\s,]+)")),
                QStringLiteral("\\fB\\-\\1\\fR"));
    tag.replace(QRegularExpression(QStringLiteral("\\b(?:Cm|Ev) (\\S+)")),
                QStringLiteral("\\fB\\1\\fR"));
    return QStringLiteral(".TP\n") + tag;
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
    const QStringList expected = tagsOf(inManMacros(mdoc));
    EXPECT_EQ(tags.join(QLatin1Char('\n')).toStdString(),
              expected.join(QLatin1Char('\n')).toStdString())
        << page.toStdString() << " (-) differs from the programs (+)";
}
