#include "apps/process/json_object.h"

#include <QString>

namespace app
{

JsonObject::JsonObject(std::initializer_list<JsonMember> members)
{
    for (const JsonMember &member : members)
        insert(QString::fromUtf8(member.key), member.value);
}

} // namespace app
