#pragma once

// Whether a program on the system's bus may read cards: polkit decides, without anyone waiting.

#include <functional>

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

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

/**
 * Whether a program that was let in may still read cards, without a dialog. Fingerprints are not
 * asked for: the password that was given for them counts for minutes, a watch may take hours.
 */
void askPolkitAgain(const QDBusConnection &bus, QObject *owner, const QString &client,
                    const Decided &decided);

/** As when another session becomes the active one at the machine. */
void startWhenPolkitChanges(QDBusConnection bus, QTimer *timer);

} // namespace app
