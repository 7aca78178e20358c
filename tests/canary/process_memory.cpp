#include "tests/canary/process_memory.h"

#include <algorithm>

#include <QFile>
#include <QList>
#include <QString>

namespace
{

/** Where memory begins and ends. */
struct Range {
    qint64 begin;
    qint64 end;
};

QList<Range> writableRanges(int process)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(process));
    maps.open(QIODevice::ReadOnly);
    QList<Range> ranges;
    for (const QByteArray &line : maps.readAll().split('\n')) {
        const QByteArrayList words = line.split(' ');
        const QByteArrayList ends = words.value(0).split('-');
        if (words.value(1).startsWith("rw") && ends.size() == 2)
            ranges << Range{ends[0].toLongLong(nullptr, 16), ends[1].toLongLong(nullptr, 16)};
    }
    return ranges;
}

} // namespace

bool canary::isInMemory(int process, const QByteArray &bytes)
{
    constexpr qint64 LARGEST_RANGE = 64LL << 20; // what is reserved and never used is larger
    QFile memory(QStringLiteral("/proc/%1/mem").arg(process));
    if (!memory.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    const QList<Range> ranges = writableRanges(process);
    return std::any_of(ranges.begin(), ranges.end(), [&memory, &bytes](const Range &range) {
        return range.end - range.begin <= LARGEST_RANGE && memory.seek(range.begin) &&
               memory.read(range.end - range.begin).contains(bytes);
    });
}
