#include "apps/service/outgoing_messages.h"

#include <utility>

namespace app
{

OutgoingMessages::OutgoingMessages(QDBusConnection bus) : m_bus(std::move(bus))
{
    constexpr int TIME_TO_BE_WRITTEN_MS = 250;
    m_forgetting.setInterval(TIME_TO_BE_WRITTEN_MS);
    QObject::connect(&m_forgetting, &QTimer::timeout, &m_forgetting, [this] { forget(); });
}

void OutgoingMessages::send(const QDBusMessage &message)
{
    m_bus.send(message);
    m_isForgotten = false;
    if (!m_forgetting.isActive())
        m_forgetting.start();
}

/**
 * The bus's library keeps five messages with what they said, if each is below 10 KiB, and makes new
 * ones of them. Longer ones it frees: some to this service itself use all of those up. Messages in
 * use meanwhile, such as calls that wait, come back later; hence once more after each sending.
 */
void OutgoingMessages::forget()
{
    constexpr int MORE_THAN_ARE_KEPT = 8;
    constexpr int TOO_LONG_TO_BE_KEPT = 10 * 1024;
    QDBusMessage filler = QDBusMessage::createTargetedSignal(
        m_bus.baseService(), QStringLiteral(IDCARD_SERVICE_PATH),
        QStringLiteral(IDCARD_SERVICE_NAME), QStringLiteral("Forgotten"));
    filler << QByteArray(TOO_LONG_TO_BE_KEPT, '\0');
    for (int i = 0; i < MORE_THAN_ARE_KEPT; ++i)
        m_bus.send(filler);
    if (std::exchange(m_isForgotten, true))
        m_forgetting.stop();
}

} // namespace app
