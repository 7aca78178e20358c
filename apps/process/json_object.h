#pragma once

// JSON's objects, made in forms that the oldest supported Qt exports too: what is built with a
// newer Qt is to run there.

#include <initializer_list>

#include <QJsonObject>
#include <QJsonValue>

namespace app
{

struct JsonMember {
    const char *key;
    QJsonValue value;
};

/** Is only ever copied, which is cheap: a constructor that moves is what older Qts lack. */
class JsonObject : public QJsonObject
{
public:
    JsonObject() = default;
    JsonObject(std::initializer_list<JsonMember> members);
    JsonObject(const JsonObject &) = default;
    JsonObject &operator=(const JsonObject &) = default;
};

} // namespace app
