#include "tests/support/generated_text.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace
{

/** A page, and where a part of it stands. */
struct Part {
    QString page;
    int first = 0;
    int last = -1; ///< below 0: the page has no such part
};

Part findPart(const QString &path, const QString &name)
{
    const bool isMarkdown = path.endsWith(QLatin1String(".md"));
    const QString comment =
        isMarkdown ? QStringLiteral("<!-- %1 -->\n") : QStringLiteral(".\\\" %1\n");
    const QString gap = isMarkdown ? QStringLiteral("\n") : QString();
    const QString begin =
        comment.arg(name + QStringLiteral(": made by scripts/make/documents")) + gap;
    const QString end = gap + comment.arg(QStringLiteral("end of ") + name);

    Part part;
    part.page = sourceText(path);
    const int comesAt = part.page.indexOf(begin);
    EXPECT_GE(comesAt, 0) << path.toStdString() << " lacks: " << begin.toStdString();
    part.first = comesAt + begin.size();
    part.last = comesAt < 0 ? -1 : part.page.indexOf(end, part.first);
    EXPECT_GE(part.last, 0) << path.toStdString() << " lacks: " << end.toStdString();
    return part;
}

} // namespace

QString partOfPage(const QString &path, const QString &name)
{
    const Part part = findPart(path, name);
    return part.last < 0 ? QString() : part.page.mid(part.first, part.last - part.first);
}

void expectGeneratedPart(const QString &path, const QString &name, const QString &text)
{
    const Part part = findPart(path, name);
    if (part.last < 0)
        return;
    if (!qEnvironmentVariableIsSet("IDCARD_WRITE_DOCUMENTS")) {
        EXPECT_EQ(part.page.mid(part.first, part.last - part.first).toStdString(),
                  text.toStdString())
            << path.toStdString() << " differs from the table; scripts/make/documents writes it";
        return;
    }
    writeFile(QStringLiteral(IDCARD_SOURCE_DIR "/") + path,
              (part.page.left(part.first) + text + part.page.mid(part.last)).toUtf8());
}
