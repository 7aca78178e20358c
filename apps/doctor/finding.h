#pragma once

// What the doctor finds: one line of its report.

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace app::doctor
{

/** Ascending, so that the highest of several is the worst. */
enum class Level { Fine, Warning, Failure };

struct Finding {
    Level level = Level::Fine;
    QString text;
    QString remedy = {};       ///< what to do, in words; empty when all is fine
    QStringList commands = {}; ///< of the remedy, one shell line each
    QJsonObject facts = {};    ///< for programs, as docs/doctor.schema.json has them
};

} // namespace app::doctor
