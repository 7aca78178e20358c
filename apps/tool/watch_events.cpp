#include "apps/tool/watch_events.h"

#include "apps/card/card_output.h"

namespace app
{

QString timeWithOffset(const QDateTime &time)
{
    QString text = time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODateWithMs);
    if (text.endsWith(QLatin1Char('Z'))) {
        text.chop(1);
        text += QLatin1String("+00:00");
    }
    return text;
}

QByteArray eventLine(const char *event, const QDateTime &time, const JsonObject &parts)
{
    JsonObject object = parts;
    object.insert("event", QLatin1String(event));
    object.insert("time", timeWithOffset(time));
    return jsonLine(object);
}

} // namespace app
