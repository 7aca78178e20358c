#include "apps/results/message.h"

#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"

namespace app
{

namespace
{

// A terminal is 80 columns wide, and the first line comes after the program's name.
constexpr int MESSAGE_WIDTH = 79;
constexpr int FIRST_LINE_WIDTH = 64;

IDCARD_TEXTS(Messages)

/** A command stays on one line, to be copied. */
QString paragraph(const QString &text)
{
    constexpr int INDENT = 4;
    if (text.startsWith(QLatin1Char(' ')))
        return text;
    return QStringLiteral("  ") + wrapped(text, MESSAGE_WIDTH - INDENT, INDENT);
}

} // namespace

QString remedyLine(const QString &remedy)
{
    return tr("What to do: %1").arg(remedy);
}

QString causeLine(const QString &cause)
{
    return tr("Cause: %1").arg(cause);
}

QString codeLine(int code, const QString &name)
{
    return tr("Code: %1 (%2)").arg(code).arg(name);
}

Message messageOf(const ResultEntry &entry, const QStringList &details)
{
    Message message{resultText(entry.summary)};
    message.lines << remedyLine(resultText(entry.remedy)) << causeLine(resultText(entry.cause))
                  << codeLine(entry.code, QLatin1String(entry.constant)) << details;
    const QString more = moreAbout(entry.exitStatus);
    if (!more.isEmpty())
        message.lines << more;
    return message;
}

QString moreAbout(ExitStatus status)
{
    if (status != ExitStatus::READER_NOT_OPENED && status != ExitStatus::PHOTO_NOT_DECODED)
        return {};
    return tr("\"idcard-reader doctor\" says more about this machine.");
}

Message unknownCodeMessage(int code)
{
    return {tr("The library returned the code %1, which this program does not know. Install the "
               "program and the library of the same version.")
                .arg(code)};
}

QString terminalText(const Message &message)
{
    if (message.lines.isEmpty())
        return message.headline;
    QStringList lines{wrapped(message.headline, FIRST_LINE_WIDTH, 2)};
    for (const QString &line : message.lines)
        lines << paragraph(line);
    return lines.join(QLatin1Char('\n'));
}

} // namespace app
