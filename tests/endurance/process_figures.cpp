#include "tests/endurance/process_figures.h"

#include <unistd.h>

#include <QDir>
#include <QFile>

endurance::ProcessFigures endurance::ownFigures()
{
    constexpr long BYTES_PER_KIB = 1024;
    QFile statm(QStringLiteral("/proc/self/statm"));
    statm.open(QIODevice::ReadOnly);
    const long pages = statm.readAll().split(' ').value(1).toLong();
    statm.close();
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const auto listed =
        descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    return {pages * sysconf(_SC_PAGESIZE) / BYTES_PER_KIB, static_cast<int>(listed.size())};
}
