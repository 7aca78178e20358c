#pragma once

// A row of a catalogue of results as a message for people.

#include <QString>
#include <QStringList>

#include "apps/result_catalogue.h"

namespace app
{

/**
 * What happened, the code, why and what to do, over several lines that fit a terminal behind the
 * program's name. `details` are lines such as "Device: ..." that follow the code.
 */
QString explanation(const ResultEntry &entry, const QStringList &details = {});

} // namespace app
