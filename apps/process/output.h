#pragma once

// Keeps standard output for the program's own results. The library prints to it (wide characters,
// which would end a program's own output there), and so may the reader maker's library.

#include <QByteArray>
#include <QString>

#include "apps/process/exit_status.h"

namespace app
{

/**
 * The program's own results. Takes standard output over when made; what anything else in the
 * process prints there afterwards is dropped, or shown on standard error after
 * `showForeignOutput`. One object per process.
 */
class Output
{
public:
    Output();
    ~Output();
    Output(const Output &) = delete;
    Output(Output &&) = delete;
    Output &operator=(const Output &) = delete;
    Output &operator=(Output &&) = delete;

    /** Writes at once. Returns false, and never writes again, after a failure. */
    bool write(const QByteArray &bytes);

    /** Closes; the last chance of the system to report a failure. */
    bool close();

    /** Whether the program that reads it has gone, before anything is written that it would miss.
     */
    bool isReaderGone();

    /** As which a pause can wait for that (`pauseFor`). */
    int descriptor() const { return m_descriptor; }

    /** Why writing failed; empty while all went well. */
    QString problem() const;

    /** Ends the process as the loss of its reader ends others: by SIGPIPE, unless it is ignored. */
    void endIfReaderGone() const;

private:
    int m_descriptor;
    int m_error = 0;
    bool m_isLossIgnored = false; ///< as the parent process arranged it
};

/**
 * Closes `output`. Returns how the program ends: with `status`, or failed, with a message, if
 * writing did. When its reader has gone, silently ends the process by SIGPIPE.
 */
ExitStatus closedWith(ExitStatus status, Output *output);

/**
 * Ends a program that has nothing else to do: reports the problem of its command line, or without
 * one writes the requested text. Returns how the program ends.
 */
ExitStatus answer(const QString &problem, const QString &text, Output *output);

} // namespace app
