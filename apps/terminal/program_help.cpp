#include "apps/terminal/program_help.h"

#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(CommandLine)

QString statusSection(const QVector<StatusMeaning> &statuses)
{
    QVector<QStringList> rows;
    for (const StatusMeaning &row : statuses)
        rows << QStringList{QString::number(static_cast<int>(row.status)), row.meaning};
    return helpSection(tr("Exit status"), rows);
}

} // namespace

QString askedText(const OptionParser &line, const QString &version, ProgramHelp (*help)())
{
    if (line.isSet("version"))
        return filledIn(QStringLiteral("%1 %2\n"), line.call(), version);
    if (!line.isSet("help"))
        return {};
    const ProgramHelp text = help();
    return tr("Usage: %1\n\n").arg(line.usage()) + wrapped(text.description, HELP_WIDTH, 0) +
           QLatin1Char('\n') + helpSection(tr("Options"), line.helpRows()) + text.sections +
           statusSection(text.statuses);
}

} // namespace app
