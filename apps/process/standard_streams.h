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

/** Lets foreign output to standard output, and what Qt logs, appear on standard error. */
void showForeignOutput();

/** Sends what Qt logs to standard error; what is not critical only after `showForeignOutput`. */
void installMessageHandler();

/**
 * While it lives, what Qt logs is not shown, unless it is critical: the library's decoders log what
 * the card holds.
 */
class HiddenLog
{
public:
    HiddenLog();
    ~HiddenLog();
    HiddenLog(const HiddenLog &) = delete;
    HiddenLog(HiddenLog &&) = delete;
    HiddenLog &operator=(const HiddenLog &) = delete;
    HiddenLog &operator=(HiddenLog &&) = delete;
};

/** Under which name `printMessage` speaks; "idcard-reader" unless it is called. The text must live
 * on. */
void setProgramName(const char *name);
const char *programName();

/** A message for people as `printMessage` prints it: behind the program's name, with a line break.
 */
QByteArray messageLine(const QString &message);

/** Prints a message for people on standard error, behind the program's name. */
void printMessage(const QString &message);

/**
 * Ends a program that has nothing else to do: reports the problem of its command line, or without
 * one writes the requested text. Returns how the program ends.
 */
ExitStatus answer(const QString &problem, const QString &text, Output *output);

/** Prints `text` on standard error as it is. */
void printToStandardError(const QString &text);

/** Whether standard error is a terminal that shows signs of life. */
bool isStandardErrorTerminal();

} // namespace app
