#pragma once

// A failure as the programs give it to other programs: the object "error" of docs/card.schema.json.

#include <optional>

#include <QString>

#include "apps/process/exit_status.h"
#include "apps/process/json_object.h"

namespace app
{

struct Failure {
    std::optional<int> code; ///< of the library; the programs' own failures have none
    QString name;
    QString headline;
    QString cause;
    QString remedy;
    ExitStatus exitStatus;
    QString words; ///< the same for a terminal
};

/** {"code", "name", "headline", "cause", "remedy", "exitStatus"} (docs/card.schema.json). */
JsonObject toJson(const Failure &failure);

} // namespace app
