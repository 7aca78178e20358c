#pragma once

// What the doctor finds: one line of its report.

#include <QString>
#include <QStringList>
#include <QVector>

#include "apps/process/json_object.h"

namespace app::doctor
{

struct Environment; // environment.h

/** Ascending, so that the highest of several is the worst. */
enum class Level { FINE, WARNING, FAILURE };

struct Finding {
    Level level = Level::FINE;
    QString text;
    QString remedy = {};       ///< what to do, in words; empty when all is fine
    QStringList commands = {}; ///< of the remedy, one shell line each
    JsonObject facts = {};     ///< for programs, as docs/doctor.schema.json has them
};

using Findings = QVector<Finding>;

/** JSON has null for what is not there. */
QJsonValue textOrNull(const QString &text);

/** The texts of an array. */
QStringList texts(const QJsonValue &array);

/** A path as a word of a shell command. */
QString quoted(const QString &path);

} // namespace app::doctor
