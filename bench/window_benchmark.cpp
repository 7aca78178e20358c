// What the window waits for a card that idcard-reader reads as its child, beside a read in a
// process that has painted before. Both are measured in turn, so that both see the same load. Ends
// with status 1 when the child takes longer by more than it may, or when a read fails.

#include <algorithm>
#include <optional>
#include <vector>

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>

#include "apps/reading/card_reader.h"
#include "apps/reading/simulator_library.h"
#include "apps/viewer/card_desk.h"

namespace
{

constexpr double LONGEST_EXTRA_MS = 40;
constexpr int READS = 60;
constexpr double NS_PER_MS = 1e6;
constexpr double MS_PER_S = 1e3;

bool isAsPromised = true;

template <typename Read>
double millisecondsOf(Read read)
{
    QElapsedTimer timer;
    timer.start();
    read();
    return static_cast<double>(timer.nsecsElapsed()) / NS_PER_MS;
}

double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/** The digest of the card that the window would show; empty when it has none. */
QByteArray readByChild(app::CardDesk *desk)
{
    QByteArray digest;
    QEventLoop loop;
    QObject::connect(desk, &app::CardDesk::cardRead, &loop,
                     [&](const app::CardPointer &card, const app::Problem & /*problem*/) {
                         digest = card->digest();
                         loop.quit();
                     });
    QObject::connect(desk, &app::CardDesk::failed, &loop, &QEventLoop::quit);
    // Within the loop, since a child that does not start is reported before read() returns.
    QMetaObject::invokeMethod(
        desk, [desk] { desk->read(); }, Qt::QueuedConnection);
    loop.exec();
    return digest;
}

QByteArray readInProcess()
{
    const app::ReadOutcome outcome = app::readCard();
    return outcome.card ? outcome.card->digest() : QByteArray();
}

void fail(benchmark::State *state, const char *why)
{
    state->SkipWithError(why);
    isAsPromised = false;
}

void readCard(benchmark::State &state, const char *name)
{
    app::SimulatorLibrary simulator;
    if (simulator.load() || simulator.putCard(QLatin1String(name))) {
        fail(&state, "the simulator has no such card");
        return;
    }
    app::CardDesk desk;
    desk.setRoad({app::ReaderRoad::SIMULATOR, {}, false});
    desk.putCard(QLatin1String(name), {});

    const QByteArray expected = readInProcess(); // with what only the first read of a process needs
    std::vector<double> children;
    std::vector<double> inProcess;
    while (state.KeepRunning()) {
        QByteArray digest;
        inProcess.push_back(millisecondsOf([&] { digest = readInProcess(); }));
        QByteArray digestOfChild;
        children.push_back(millisecondsOf([&] { digestOfChild = readByChild(&desk); }));
        if (expected.isEmpty() || digest != expected || digestOfChild != expected) {
            fail(&state, "the two do not read the same card");
            return;
        }
        state.SetIterationTime(children.back() / MS_PER_S);
    }
    const double extra = medianOf(children) - medianOf(inProcess);
    state.counters["child_ms"] = medianOf(children);
    state.counters["in_process_ms"] = medianOf(inProcess);
    state.counters["extra_ms"] = extra;
    isAsPromised = isAsPromised && extra <= LONGEST_EXTRA_MS;
}

/** Each run is `READS` reads of either way, timed by the child's. */
void asRun(benchmark::internal::Benchmark *run)
{
    run->Iterations(READS)->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK_CAPTURE(readCard, resident, "resident")->Apply(asRun);
BENCHMARK_CAPTURE(readCard, hmt, "hmt-hong-kong")->Apply(asRun);
BENCHMARK_CAPTURE(readCard, foreign_2017, "foreign-2017")->Apply(asRun);
BENCHMARK_CAPTURE(readCard, foreign_new, "foreign-new")->Apply(asRun);

int main(int argc, char **argv)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return isAsPromised ? 0 : 1;
}
