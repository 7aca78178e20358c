#include "apps/doctor/child.h"

#include <csignal>
#include <cstring>

#include <QJsonDocument>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apps/process/child_process.h"
#include "apps/process/link_target.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "common/texts.h"
#include "common/write_all.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

constexpr const char *CHILD = "doctor-child"; ///< the first argument; not for users
constexpr char END_MARK[] = "\x04\n";         ///< the last line: an exit without it is a crash

void writeTo(int descriptor, const QByteArray &text)
{
    writeAll(descriptor, text.constData(), static_cast<std::size_t>(text.size()));
}

QString describe(const ChildEnd &end)
{
    if (!end.status)
        return tr("no process could be started: %1").arg(systemError(end.error));
    if (!WIFSIGNALED(*end.status))
        return tr("it ended the program with the status %1").arg(WEXITSTATUS(*end.status));
    const int number = WTERMSIG(*end.status);
    return filledIn(tr("signal %1, %2"), QString::number(number),
                    translatedSystemText(QString::fromLocal8Bit(::strsignal(number))));
}

JsonObject merged(const QByteArray &lines)
{
    JsonObject all;
    for (const QByteArray &line : lines.split('\n')) {
        const QJsonObject values = QJsonDocument::fromJson(line).object();
        for (auto it = values.begin(); it != values.end(); ++it)
            all.insert(it.key(), it.value());
    }
    return all;
}

} // namespace

ChildRun runInChild(const QStringList &work, int timeoutMs)
{
    const QString program = linkTarget(QStringLiteral("/proc/self/exe"));
    const ChildEnd end = runChild(QStringList{program, QLatin1String(CHILD)} + work, timeoutMs);
    ChildRun run;
    run.values = merged(end.output);
    run.log = end.errorOutput;
    if (!end.status && end.error == 0) {
        run.end = ChildRun::End::TIMED_OUT;
    } else if (!end.output.endsWith(END_MARK)) {
        run.end = ChildRun::End::CRASHED;
        run.how = describe(end);
    }
    return run;
}

void workIfChild(const QStringList &arguments, const Works &works)
{
    if (arguments.value(0) != QLatin1String(CHILD) || !works.contains(arguments.value(1)))
        return;
    ::prctl(PR_SET_DUMPABLE, 0);
    const int channel = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    showForeignOutput();
    writeTo(channel, "\n"); // behind what a preloaded library may have printed
    works[arguments[1]](arguments.mid(2), [channel](const JsonObject &values) {
        writeTo(channel, QJsonDocument(values).toJson(QJsonDocument::Compact) + '\n');
    });
    writeTo(channel, END_MARK);
    ::_exit(0);
}

} // namespace app::doctor
