#include "apps/doctor/service.h"

#include <sys/wait.h>

#include "apps/doctor/environment.h"
#include "apps/process/child_process.h"
#include "apps/process/link_target.h"
#include "apps/process/translation.h"
#include "common/texts.h"

namespace app::doctor
{

namespace
{

IDCARD_TEXTS(Doctor)

constexpr int LIMIT_MS = 30000;

const QString ERRORS = QStringLiteral(IDCARD_SERVICE_DOMAIN ".Error.");

/** The card that it answers with is not looked at. */
ServiceState readInside()
{
    const QStringList command =
        splitAt(QLatin1Char(' '),
                QStringLiteral("dbus-send --system --print-reply --reply-timeout=25000 "
                               "--dest=" IDCARD_SERVICE_NAME " " IDCARD_SERVICE_PATH
                               " " IDCARD_SERVICE_NAME ".ReadCard array:string: uint32:10000"));
    const ChildEnd end = runChild(command, LIMIT_MS, Collected::ERRORS);
    ServiceState state = parseBusError(QString::fromUtf8(end.errorOutput));
    if (end.error != 0)
        state.message = filledIn(QStringLiteral("%1: %2"), command[0], systemError(end.error));
    else if (!end.status)
        state.message = tr("no answer came in time");
    return state;
}

ExitStatus readOutside()
{
    const QString program = linkTarget(QStringLiteral("/proc/self/exe"));
    const ChildEnd end =
        runChild({program, "read", "--timeout", "10"}, LIMIT_MS, Collected::ERRORS);
    if (!end.status)
        return ExitStatus::READ_TIMED_OUT;
    return WIFEXITED(*end.status) ? static_cast<ExitStatus>(WEXITSTATUS(*end.status))
                                  : ExitStatus::READ_FAILED;
}

Finding failure(const QString &text, const QString &remedy, const QStringList &commands = {})
{
    return {Level::FAILURE, text, remedy, commands};
}

bool readsOutside(const ServiceState &service)
{
    return service.outside == ExitStatus::DONE || service.outside == ExitStatus::NO_CARD ||
           service.outside == ExitStatus::PHOTO_NOT_DECODED;
}

Finding judged(const ServiceState &service)
{
    const auto isError = [&](const char *name) {
        return service.error == ERRORS + QLatin1String(name);
    };
    if (service.error.isEmpty() && service.message.isEmpty())
        return {Level::FINE, tr("a card was read through it")};
    if (isError("NoCard"))
        return {Level::FINE, tr("it reaches the reader, on which no card lies")};
    if (isError("Busy"))
        return {Level::WARNING, tr("another program is reading through it"),
                tr("End the other program and look again.")};
    if (service.error == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown"))
        return failure(tr("it is not installed"),
                       tr("Install it (Debian: idcard-reader-service)."));
    if (isError("NotAuthorized"))
        return failure(
            tr("polkit does not let this user read cards through it: %1").arg(service.message),
            tr("Try from a session at the machine, or let the account in with a rule, "
               "as docs/service.md has one."));
    if (!service.error.startsWith(ERRORS))
        return failure(tr("it does not answer: %1").arg(service.message), tr("See what it says:"),
                       {QStringLiteral("journalctl -u idcard-readerd.service -e")});
    const QString name = service.error.mid(ERRORS.size());
    if (!readsOutside(service))
        return failure(
            filledIn(tr("neither it nor idcard-reader reads: %1, %2"), name, service.message),
            tr("Make a read without it work first:"), {QStringLiteral("idcard-reader read")});
    return failure(filledIn(tr("idcard-reader reads, but the service does not: %1, %2"), name,
                            service.message),
                   tr("What confines the service keeps the maker's library from something. Give "
                      "that back, as docs/service.md shows, with:"),
                   {QStringLiteral("systemctl edit idcard-readerd.service")});
}

} // namespace

ServiceState parseBusError(const QString &printed)
{
    ServiceState state;
    // What happened and why; what to do the doctor says itself.
    const QString text = printed.trimmed()
                             .section(QLatin1Char('\n'), 0, 1)
                             .replace(QLatin1Char('\n'), QLatin1Char(' '));
    const QString error = QStringLiteral("Error ");
    state.message = text;
    if (text.startsWith(error)) {
        state.error = text.mid(error.size()).section(QStringLiteral(": "), 0, 0);
        state.message = text.section(QStringLiteral(": "), 1);
    }
    return state;
}

ServiceState probeService()
{
    ServiceState state = readInside();
    state.outside = readOutside();
    state.isProbed = true;
    return state;
}

Findings checkService(const Environment &environment)
{
    if (!environment.service.isProbed)
        return {};
    return {judged(environment.service)};
}

} // namespace app::doctor
