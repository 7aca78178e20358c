#pragma once

// What a process does with a signal, as the kernel shows it.

#include <QRegularExpression>

#include <sys/types.h>

#include "tests/support/files.h"

/** Under an emulator: whether that does. */
inline bool isIgnored(int signal, pid_t process)
{
    static const QRegularExpression line("SigIgn:\\s*([0-9a-f]+)");
    const QString status = readFile(QStringLiteral("/proc/%1/status").arg(process));
    const quint64 ignored = line.match(status).captured(1).toULongLong(nullptr, 16);
    return (ignored >> (signal - 1) & 1U) != 0;
}
