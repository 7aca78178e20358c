#pragma once

// What a process does with a signal, as the kernel shows it.

#include <QRegularExpression>

#include <sys/types.h>

#include "tests/support/files.h"

/** Whether it is in a set of the process such as "SigIgn". Under an emulator: in the emulator's. */
inline bool isSignalIn(const char *set, int signal, pid_t process)
{
    const QRegularExpression line(QStringLiteral("%1:\\s*([0-9a-f]+)").arg(QLatin1String(set)));
    const QString status = readFile(QStringLiteral("/proc/%1/status").arg(process));
    const quint64 mask = line.match(status).captured(1).toULongLong(nullptr, 16);
    return (mask >> (signal - 1) & 1U) != 0;
}

inline bool isIgnored(int signal, pid_t process)
{
    return isSignalIn("SigIgn", signal, process);
}

inline bool isBlocked(int signal, pid_t process)
{
    return isSignalIn("SigBlk", signal, process);
}
