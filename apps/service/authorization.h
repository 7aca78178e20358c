#pragma once

// Whether a program on the system's bus may read cards: polkit decides, without anyone waiting.

#include <functional>
#include <utility>

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>

namespace app
{

class Authorization
{
public:
    /** Takes why not; empty: the program may. */
    using Decided = std::function<void(const QString &refusal)>;

    /** `owner`: with which questions that are not answered are dropped. */
    Authorization(QDBusConnection bus, QObject *owner) : m_bus(std::move(bus)), m_owner(owner) {}

    /** Asks for a program, by its unique name, that wants these parts of a card. */
    void ask(const QString &client, const QStringList &parts, const Decided &decided);

private:
    void ask(const QString &client, const QString &action, const Decided &decided);

    QDBusConnection m_bus;
    QObject *m_owner;
};

} // namespace app
