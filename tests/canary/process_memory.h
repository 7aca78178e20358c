#pragma once

// What stands in the memory of another process.

#include <QByteArray>

namespace canary
{

/** Whether `bytes` stand in memory that the process can write. */
bool isInMemory(int process, const QByteArray &bytes);

} // namespace canary
