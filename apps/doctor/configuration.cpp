#include "apps/doctor/configuration.h"

#include "apps/doctor/environment.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

/** "PATH: road = usb, timeout = 30" */
QString contentOf(const ConfigurationFile &file)
{
    QStringList lines;
    for (const Setting &setting : file.settings)
        lines << filledIn(QStringLiteral("%1 = %2"), setting.key, setting.value);
    return filledIn(tr("%1: %2"), file.path,
                    lines.isEmpty() ? tr("no setting") : lines.join(tr(", ")));
}

QString pathsOf(const Configuration &configuration)
{
    QStringList paths;
    for (const ConfigurationFile &file : configuration)
        paths << file.path;
    return paths.join(tr(" and no "));
}

Finding judgedConfiguration(const Configuration &configuration)
{
    QStringList contents;
    for (const ConfigurationFile &file : configuration) {
        if (!file.mistake.isEmpty())
            return {Level::FAILURE, file.placedMistake(), file.remedy};
        if (file.isThere)
            contents << contentOf(file);
    }
    if (contents.isEmpty())
        return {Level::FINE, tr("No %1").arg(pathsOf(configuration))};
    return {Level::FINE, contents.join(tr("; "))};
}

} // namespace

Findings checkConfiguration(const Environment &environment)
{
    return {judgedConfiguration(environment.configuration)};
}

} // namespace app::doctor
