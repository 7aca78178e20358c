// What it costs a process to load the library, beside loading Qt Gui alone: the wall time of a
// process that loads the named files and ends.

#include <string>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

namespace
{

bool runProbe(std::vector<std::string> files)
{
    std::string program = IDCARD_LOAD_PROBE;
    std::vector<char *> arguments{program.data()};
    for (std::string &file : files)
        arguments.push_back(file.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = 0;
    return posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments.data(), environ) == 0 &&
           waitpid(child, &status, 0) == child && status == 0;
}

void loadProcess(benchmark::State &state, const std::vector<std::string> &files)
{
    while (state.KeepRunning()) {
        if (!runProbe(files)) {
            state.SkipWithError("the probe failed");
            break;
        }
    }
}

} // namespace

BENCHMARK_CAPTURE(loadProcess, nothing, std::vector<std::string>{})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadProcess, qt_gui, std::vector<std::string>{IDCARD_QT_GUI})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(loadProcess, qt_gui_and_library,
                  std::vector<std::string>{IDCARD_QT_GUI, IDCARD_LIBRARY})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
