#pragma once

// What the service sends over the bus, of which nothing stays in its memory.

#include <QDBusConnection>
#include <QDBusMessage>
#include <QTimer>

namespace app
{

class OutgoingMessages
{
public:
    explicit OutgoingMessages(QDBusConnection bus);

    void send(const QDBusMessage &message);

private:
    void forget();

    QDBusConnection m_bus;
    QTimer m_forgetting;
    bool m_isForgotten = true; ///< what was sent until now
};

} // namespace app
