#include "tests/endurance/process_figures.h"

#include <QDir>
#include <QFile>

namespace
{

/** The number in the line "NAME:   1234 kB". */
long numberOf(const char *name, const QByteArray &status)
{
    for (const QByteArray &line : status.split('\n')) {
        if (line.startsWith(QByteArray(name) + ':'))
            return line.simplified().split(' ').value(1).toLong();
    }
    return 0;
}

} // namespace

endurance::ProcessFigures endurance::figuresOf(const QString &process)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(process);
    QFile file(folder + QStringLiteral("status"));
    file.open(QIODevice::ReadOnly);
    const QByteArray status = file.readAll();
    file.close();
    const QDir descriptors(folder + QStringLiteral("fd"));
    const auto listed =
        descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    return {numberOf("VmRSS", status), numberOf("VmHWM", status), static_cast<int>(listed.size())};
}

endurance::ProcessFigures endurance::ownFigures()
{
    return figuresOf(QStringLiteral("self"));
}
