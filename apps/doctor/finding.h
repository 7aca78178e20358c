#pragma once

// What the doctor finds: one line of its report.

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

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
};

using Findings = QVector<Finding>;

/** The texts of an array. */
QStringList texts(const QJsonValue &array);

/** A path as a word of a shell command. */
QString quoted(const QString &path);

} // namespace app::doctor
