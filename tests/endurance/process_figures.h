#pragma once

// What a process holds, as the kernel reports it.

namespace endurance
{

struct ProcessFigures {
    long residentKiB = 0;
    int openFiles = 0;
};

ProcessFigures ownFigures();

} // namespace endurance
