#include "apps/explanation.h"

#include "apps/text_layout.h"

namespace app
{

namespace
{

// A terminal is 80 columns wide, and the first line comes after the program's name.
constexpr int MESSAGE_WIDTH = 79;
constexpr int FIRST_LINE_WIDTH = 64;

QString paragraph(const QString &text)
{
    constexpr int INDENT = 4;
    return QStringLiteral("  ") + wrapped(text, MESSAGE_WIDTH - INDENT, INDENT);
}

} // namespace

QString explanation(const ResultEntry &entry, const QStringList &details)
{
    QStringList lines{
        wrapped(QString::fromUtf8(entry.summary), FIRST_LINE_WIDTH, 2),
        QStringLiteral("  Code: %1 (%2)").arg(entry.code).arg(QLatin1String(entry.constant))};
    for (const QString &detail : details)
        lines << paragraph(detail);
    lines << paragraph(QStringLiteral("Cause: ") + QString::fromUtf8(entry.cause))
          << paragraph(QStringLiteral("What to do: ") + QString::fromUtf8(entry.remedy));
    return lines.join(QLatin1Char('\n'));
}

} // namespace app
