#pragma once

// The library's lines in Qt's log. A line that there is no memory for, or that the host's message
// handler throws at, is left out: nothing that is logged is worth what it is logged about. A thread
// that is cancelled writes its line to the end.

/**
 * One line, as `qDebug(format, ...)` writes it. Qt's stream, `qDebug() << ...`, would not do: it
 * writes its line in a destructor, and what is thrown there ends the process.
 */
[[gnu::format(printf, 1, 2)]] void debugLine(const char *format, ...) noexcept;

/** One line of critical level, as `qCritical` writes it. */
void criticalLine(const char *text) noexcept;
