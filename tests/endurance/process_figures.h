#pragma once

// What a process holds, as the kernel reports it.

#include <QString>

namespace endurance
{

struct ProcessFigures {
    long residentKiB = 0;
    long peakKiB = 0; ///< the most that was resident at once
    int openFiles = 0;
};

/** Of the process of this number, or of "self". */
ProcessFigures figuresOf(const QString &process);

ProcessFigures ownFigures();

} // namespace endurance
