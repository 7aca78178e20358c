// idcard-readerd: takes the command line, joins the bus and serves until nobody needs it.

#include <array>

#include <QCoreApplication>
#include <QFile>

#include <unistd.h>

#include "apps/process/child_process.h"
#include "apps/process/core_dumps.h"
#include "apps/process/interruption.h"
#include "apps/process/link_target.h"
#include "apps/process/locale.h"
#include "apps/process/output.h"
#include "apps/process/program_name.h"
#include "apps/process/readable_notifier.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/service/reader_service.h"
#include "apps/service/service_options.h"

namespace
{

using namespace app;

IDCARD_TEXTS(Service)

// Qt takes its own arguments out of the ones it gets; this program's are not among them.
std::array<char, 15> programName = {"idcard-readerd"};
std::array<char *, 2> qtArguments = {programName.data(), nullptr};
int qtArgumentCount = 1;

/**
 * Freed memory is overwritten, since it may hold what a card says, also where Qt and the bus's
 * library had it. The C library takes that from the environment alone, when the program starts.
 */
void overwriteFreedMemory(char **argv)
{
    constexpr const char *SETTINGS = "glibc.malloc.perturb=170:glibc.malloc.tcache_count=0";
    if (qgetenv(MALLOC_SETTINGS) == SETTINGS)
        return;
    qputenv(MALLOC_SETTINGS, SETTINGS);
    const QByteArray program = QFile::encodeName(linkTarget(QStringLiteral("/proc/self/exe")));
    ::execv(program.constData(), argv);
    // If that fails, the service works all the same.
}

ExitStatus serve(const ServiceOptions &options)
{
    QDBusConnection bus =
        options.isOnSessionBus ? QDBusConnection::sessionBus() : QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        printMessage(tr("The bus cannot be reached: %1. Start the program where there is one, for "
                        "instance within dbus-run-session.")
                         .arg(bus.lastError().message()));
        return ExitStatus::PROGRAM_FAILED;
    }
    bus.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                QCoreApplication::instance(), SLOT(quit()));
    catchInterruption(ExitStatus::DONE);
    ReaderService service(options, bus);
    if (!service.appear()) {
        printMessage(tr("The name %1 cannot be had on the bus: another service has it, or this "
                        "user may not. systemd starts the service as the user who may.")
                         .arg(QStringLiteral(IDCARD_SERVICE_NAME)));
        return ExitStatus::PROGRAM_FAILED;
    }
    ReadableNotifier interruption(interruptionDescriptor(), [&] {
        interruption.setEnabled(false);
        service.leave();
    });
    QCoreApplication::exec();
    return ExitStatus::DONE;
}

ExitStatus run(const QStringList &arguments, Output *output)
{
    const QCoreApplication application(qtArgumentCount, qtArguments.data());
    translateApplication();
    const CommandLine<ServiceOptions> line = parseServiceArguments(arguments);
    return line.options ? serve(*line.options) : answer(line.problem, line.text, output);
}

} // namespace

int main(int argc, char **argv)
{
    forbidCoreDumps();
    overwriteFreedMemory(argv);
    setProgramName(SERVICE_PROGRAM_NAME);
    Output output;
    installMessageHandler();
    learnHowChildrenEnd();
    useEncodingOfLocale();
    const ExitStatus status = run(argumentsOf(argc, argv), &output);
    return static_cast<int>(closedWith(status, &output));
}
