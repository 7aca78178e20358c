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
    if (english == "Options of every command")
        return "各命令共有的选项";
    return english == "Faults" ? "故障" : english;
}

/** A line of text; none is broken at a hyphen, since those are parts of names. */
QString manText(QString line)
{
    line.replace("\\-", "-");
    return line.replace('-', "\\-");
}

/** A line of mdoc(7) that a part has, without its text, in the macros of man(7). */
QString manMacro(const QString &line)
{
    const QString rest = line.mid(4);
    if (line.startsWith(".Ss "))
        return ".SS " + chineseHeading(rest);
    if (line.startsWith(".Dl "))
        return QStringLiteral(".RS 4\n%1\n.RE").arg(manText(rest));
    if (line == ".Pp")
        return ".PP";
    QString tag = rest;
    tag.replace('-', "\\-");
    tag.replace(" ,", ",");
    tag.replace(" or ", " 或 ");
    tag.replace(QRegularExpression("\\bOp Ar (.+)$"), "[\\fI\\1\\fR]");
    tag.replace(QRegularExpression("\\bAr (.+)$"), "\\fI\\1\\fR");
    tag.replace(QRegularExpression("\\bFl ([^\\s,]+)"), "\\fB\\-\\1\\fR");
    tag.replace(QRegularExpression("\\b(?:Cm|Ev) (\\S+)"), "\\fB\\1\\fR");
    return ".TP\n" + tag;
}

/** The tags of a part in the macros of man(7), each with its heading before it. */
QStringList tagsOf(const QString &part)
{
    static const QRegularExpression line("^\\.(SS|TP)[ \\n](.*)$",
                                         QRegularExpression::MultilineOption);
    QStringList tags;
    QString heading;
    auto found = line.globalMatch(part);
    while (found.hasNext()) {
        const auto match = found.next();
        if (match.captured(1) == "SS")
            heading = match.captured(2) + ": ";
        else
            tags << heading + match.captured(2);
    }
    return tags;
}

} // namespace

QString inManMacros(const QString &mdoc)
{
    QString text;
    for (const QString &line : mdoc.split('\n')) {
        if (line.startsWith(".Bl") || line == ".El")
            continue;
        text += (line.startsWith('.') ? manMacro(line) : manText(line)) + '\n';
    }
    text.chop(1);
    return text;
}

void expectSameTags(const QString &page, const QString &name, const QString &mdoc)
{
    const QStringList tags = tagsOf(partOfPage(page, name));
    const QStringList expected = tagsOf(inManMacros(mdoc));
    EXPECT_EQ(tags.join('\n').toStdString(), expected.join('\n').toStdString())
        << page.toStdString() << " (-) differs from the programs (+)";
}
