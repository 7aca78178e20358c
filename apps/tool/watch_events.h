#pragma once

// The lines of `watch --events` (docs/card.schema.json).

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include "apps/process/json_object.h"

namespace app
{

/** With milliseconds and the offset from UTC: "2026-11-22T08:30:00.250+08:00". */
QString timeWithOffset(const QDateTime &time);

/** One event with the parts that belong to it, on one line, ending with a line break. */
QByteArray eventLine(const char *event, const QDateTime &time, const JsonObject &parts = {});

} // namespace app
