#include "apps/process/error_object.h"

namespace app
{

JsonObject toJson(const Failure &failure)
{
    return {{"code", failure.code ? QJsonValue(*failure.code) : QJsonValue()},
            {"name", failure.name},
            {"headline", failure.headline},
            {"cause", failure.cause},
            {"remedy", failure.remedy},
            {"exitStatus", static_cast<int>(failure.exitStatus)}};
}

} // namespace app
