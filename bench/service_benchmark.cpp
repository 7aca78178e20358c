// What a reading through the D-Bus service costs beside one by the tool alone: the wall time of
// each, on the simulated card. Needs a bus, which dbus-run-session provides. Fails when the service
// adds more than it may.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QThread>

namespace
{

constexpr int READINGS = 50;
constexpr double MOST_ADDED_MS = 15;

const QString TOOL = QStringLiteral(IDCARD_TOOL);
const QString NAME = QStringLiteral(IDCARD_SERVICE_NAME);

/** A reading, and whether it gave a card. */
using Reading = std::function<bool()>;

double millisecondsOf(const Reading &read)
{
    const auto begin = std::chrono::steady_clock::now();
    if (!read()) {
        std::fprintf(stderr, "A reading failed\n");
        std::exit(1);
    }
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

double median(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

bool readWithTool()
{
    QProcess tool;
    tool.start(TOOL, {"read", "--json", "--simulate", "resident"}, QIODevice::ReadOnly);
    return tool.waitForFinished() && tool.exitCode() == 0 &&
           !tool.readAllStandardOutput().isEmpty();
}

bool readThroughService()
{
    QDBusMessage call = QDBusMessage::createMethodCall(NAME, QStringLiteral(IDCARD_SERVICE_PATH),
                                                       NAME, QStringLiteral("ReadCard"));
    call << QStringList() << 20000U;
    return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
}

bool startService(QProcess *service)
{
    constexpr int TRIES = 200;
    service->start(QStringLiteral(IDCARD_SERVICE), {"--session", "--simulate", "resident"});
    for (int i = 0; i < TRIES; ++i) {
        if (QDBusConnection::sessionBus().interface()->isServiceRegistered(NAME))
            return true;
        QThread::msleep(50);
    }
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QProcess service;
    if (!QDBusConnection::sessionBus().isConnected() || !startService(&service)) {
        std::fprintf(stderr, "The service does not start: run this within dbus-run-session\n");
        return 1;
    }
    std::vector<double> tool;
    std::vector<double> throughService;
    for (int i = 0; i < READINGS; ++i) { // in turns, so that both have the same machine
        tool.push_back(millisecondsOf(readWithTool));
        throughService.push_back(millisecondsOf(readThroughService));
    }
    service.terminate();
    service.waitForFinished();
    const double added = median(throughService) - median(tool);
    std::printf(
        "%d readings each, medians: tool %.1f ms, service %.1f ms, which adds %.1f ms of at "
        "most %.0f\n",
        READINGS, median(tool), median(throughService), added, MOST_ADDED_MS);
    return added <= MOST_ADDED_MS ? 0 : 1;
}
