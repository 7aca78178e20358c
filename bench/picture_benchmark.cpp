// The two pictures of every kind of card in time, beside what Qt itself needs for the same result.
// Offscreen, at 100 dpi, warm.

#include "bench/picture_sides.h"

#include <string>

#include <benchmark/benchmark.h>

#include <QGuiApplication>

namespace
{

void makePictures(benchmark::State &state, const Side &front, const Side &back, bool floor)
{
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(floor ? floorOf(front) : front.make());
        benchmark::DoNotOptimize(floor ? floorOf(back) : back.make());
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QGuiApplication application(argc, argv);
    for (const Kind &kind : KINDS) {
        const Side front = sideOf(kind.frontPath, kind.front);
        const Side back = sideOf(kind.backPath, kind.back);
        for (const bool floor : {true, false}) {
            const std::string name = std::string(kind.name) + (floor ? "/floor" : "/makers");
            benchmark::RegisterBenchmark(name.c_str(), [front, back, floor](benchmark::State &s) {
                makePictures(s, front, back, floor);
            })->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
