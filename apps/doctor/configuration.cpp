#include "apps/doctor/configuration.h"

#include <QJsonArray>

#include "apps/doctor/environment.h"
#include "apps/process/json_object.h"
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

QJsonValue factsOf(const ConfigurationFile &file)
{
    QJsonArray settings;
    for (const Setting &setting : file.settings)
        settings << JsonObject{
            {"key", setting.key}, {"value", setting.value}, {"line", setting.line}};
    return JsonObject{{"file", file.path},
                      {"isThere", file.isThere},
                      {"settings", settings},
                      {"mistake", textOrNull(file.mistake)},
                      {"line", file.mistakeLine == 0 ? QJsonValue() : file.mistakeLine}};
}

} // namespace

Findings checkConfiguration(const Environment &environment)
{
    Finding finding = judgedConfiguration(environment.configuration);
    QJsonArray files;
    for (const ConfigurationFile &file : environment.configuration)
        files << factsOf(file);
    finding.facts = {{"files", files}};
    return {finding};
}

} // namespace app::doctor
