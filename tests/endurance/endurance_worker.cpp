// endurance_worker OPERATION COUNT: does an operation COUNT times and prints what the process held
// and how long an operation took near the beginning and at the end, as one line of JSON. The first
// tenth is not counted: caches fill in it.

#include <algorithm>
#include <chrono>
#include <cstdio>

#include <unistd.h>

#include <QFile>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include "tests/endurance/operations.h"
#include "tests/endurance/process_figures.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t WINDOWS = 10; // the second is the beginning, the last is the end

/** Figures after a window of operations. */
struct Window {
    endurance::ProcessFigures held;
    double microseconds = 0; ///< an operation took, on average
};

void ignore(QtMsgType, const QMessageLogContext &, const QString &) {}

std::unique_ptr<endurance::Operation> operationOf(const QString &name, QString *problem)
{
    if (name == QLatin1String("read"))
        return endurance::readingCards(problem);
    if (name == QLatin1String("usb"))
        return endurance::readingOverUsb();
    if (name == QLatin1String("decode"))
        return endurance::decodingRecords(problem);
    *problem = QStringLiteral("there is no operation \"%1\"").arg(name);
    return nullptr;
}

/** Runs operations `first` to `end`; a problem is reported and ends it. */
bool runWindow(endurance::Operation *operation, std::uint64_t first, std::uint64_t end,
               Window *window)
{
    const auto start = Clock::now();
    for (std::uint64_t number = first; number < end; ++number) {
        const QString problem = operation->run(number);
        if (!problem.isEmpty()) {
            std::fprintf(stderr, "operation %llu: %s\n", static_cast<unsigned long long>(number),
                         qPrintable(problem));
            return false;
        }
    }
    const std::chrono::duration<double, std::micro> took = Clock::now() - start;
    *window = {endurance::ownFigures(),
               took.count() / static_cast<double>(std::max<std::uint64_t>(end - first, 1))};
    return true;
}

QJsonObject toJson(const Window &window)
{
    return {{"residentKiB", static_cast<double>(window.held.residentKiB)},
            {"openFiles", window.held.openFiles},
            {"microseconds", window.microseconds}};
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(ignore);
    const QGuiApplication application(argc, argv);
    const QString name = application.arguments().value(1);
    const std::uint64_t count = application.arguments().value(2).toULongLong();
    QString problem;
    const auto operation = operationOf(name, &problem);
    if (!operation || count < WINDOWS) {
        std::fprintf(stderr, "%s\n", qPrintable(operation ? QStringLiteral("too few") : problem));
        return EXIT_FAILURE;
    }
    QVector<Window> windows(WINDOWS);
    for (std::uint64_t i = 0; i < WINDOWS; ++i)
        if (!runWindow(operation.get(), i * count / WINDOWS, (i + 1) * count / WINDOWS,
                       &windows[static_cast<int>(i)]))
            return EXIT_FAILURE;
    const QJsonObject result{{"operation", name},
                             {"count", static_cast<double>(count)},
                             {"failures", static_cast<double>(operation->failures())},
                             {"beginning", toJson(windows.at(1))},
                             {"end", toJson(windows.last())}};
    // Past the C stream, which reads that failed have written wide characters to.
    QFile output;
    output.open(STDOUT_FILENO, QIODevice::WriteOnly);
    output.write(QJsonDocument(result).toJson(QJsonDocument::Compact) + '\n');
    return EXIT_SUCCESS;
}
