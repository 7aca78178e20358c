#include "tests/support/generated_text.h"

#include <gtest/gtest.h>

#include <QFile>

void expectGeneratedPart(const QString &path, const QString &name, const QString &text)
{
    const bool isMarkdown = path.endsWith(QLatin1String(".md"));
    const QString comment =
        isMarkdown ? QStringLiteral("<!-- %1 -->\n") : QStringLiteral(".\\\" %1\n");
    const QString gap = isMarkdown ? QStringLiteral("\n") : QString();
    const QString begin =
        comment.arg(name + QStringLiteral(": made by scripts/make/documents")) + gap;
    const QString end = gap + comment.arg(QStringLiteral("end of ") + name);

    QFile file(QStringLiteral(IDCARD_SOURCE_DIR "/") + path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    const QString page = QString::fromUtf8(file.readAll());
    file.close();
    const int first = page.indexOf(begin) + begin.size();
    const int last = page.indexOf(end, first);
    ASSERT_GE(first, begin.size()) << path.toStdString() << " lacks: " << begin.toStdString();
    ASSERT_GE(last, 0) << path.toStdString() << " lacks: " << end.toStdString();
    if (!qEnvironmentVariableIsSet("IDCARD_WRITE_DOCUMENTS")) {
        EXPECT_EQ(page.mid(first, last - first).toStdString(), text.toStdString())
            << path.toStdString() << " differs from the table; scripts/make/documents writes it";
        return;
    }
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write((page.left(first) + text + page.mid(last)).toUtf8());
}
