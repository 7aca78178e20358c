#pragma once

// Messages for people on standard error, and what others in the process print or log.

#include <QString>

namespace app
{

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

/** Prints a message for people on standard error, behind the program's name. */
void printMessage(const QString &message);

/** Prints `text` on standard error as it is. */
void printToStandardError(const QString &text);

/** Whether standard error is a terminal that shows signs of life. */
bool isStandardErrorTerminal();

} // namespace app
