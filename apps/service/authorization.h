#pragma once

// Whether a program on the system's bus may read cards: polkit decides, without anyone waiting.

#include <functional>

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>

namespace app
{

/** Takes why not; empty: the program may. */
using Decided = std::function<void(const QString &refusal)>;

/**
 * Asks for a program, by its unique name, that wants these parts of a card. `owner`: with which
 * questions that are not answered are dropped.
 */
void askPolkit(const QDBusConnection &bus, QObject *owner, const QString &client,
               const QStringList &parts, const Decided &decided);

} // namespace app
