#pragma once

// The commands that a user or a script gives a running virtual reader: a line in, a line out.

#include <functional>

#include <QString>
#include <QStringList>
#include <QVector>

#include "simulator/reader/virtual_reader.h"

namespace app
{

class ReaderConsole
{
public:
    /** `isAttached` returns whether a client has the reader. Both must live on. */
    ReaderConsole(simulator::VirtualReader &reader, std::function<bool()> isAttached);

    /**
     * Carries out one line. The answer is one line without its end, "ok" or "ok ..." or
     * "error: ..."; it is empty for a blank line, which is no command.
     */
    QString answer(const QString &line);

    /** Puts a card, or sets faults; what is wrong with them, or an empty text. */
    QString putCard(const QString &nameOrFile);
    QString setFaults(const QString &list);

    /** Which of the faults in force no client will see, and why; empty when there is none. */
    QString hiddenFaults() const;

    bool wantsToQuit() const { return m_wantsToQuit; }

private:
    friend struct ConsoleCommands;

    simulator::VirtualReader &m_reader;
    std::function<bool()> m_isAttached;
    QString m_card;   ///< as it was named when it was put
    QString m_faults; ///< as they were given
    bool m_wantsToQuit = false;
};

/** How each command is written and what it does, for a help text. */
QVector<QStringList> consoleCommandRows();

} // namespace app
