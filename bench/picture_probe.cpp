// Makes the two pictures of one card, or does what Qt itself needs for the same result: the floor.
// scripts/check/count-picture-instructions runs it under a counter of instructions, which counts
// inside `measuredPictures` only.
//
// Usage: picture_probe resident|hmt|foreign-2017|foreign-new makers|floor|first|memory
//   makers  front and back, after they were made once
//   floor   the same by way of Qt alone
//   first   front and back, as the first thing that the process paints
//   memory  prints the peak of resident memory before and after the first front and back

#include "bench/picture_sides.h"

#include <cstdio>
#include <cstring>
#include <functional>

#include <QGuiApplication>

namespace
{

/** Prints the line of peak memory that the kernel keeps of this process. */
void printPeakMemory(const char *when)
{
    std::FILE *const status = std::fopen("/proc/self/status", "r");
    char line[256];
    while (status != nullptr && std::fgets(line, sizeof(line), status) != nullptr)
        if (std::strncmp(line, "VmHWM:", 6) == 0)
            std::printf("%-6s %s", when, line + 6);
    if (status != nullptr)
        std::fclose(status);
}

} // namespace

/** What is counted. Returns how long both texts are. */
extern "C" [[gnu::noinline]] int measuredPictures(const std::function<QString()> &front,
                                                  const std::function<QString()> &back)
{
    return front().length() + back().length();
}

namespace
{

int measure(const Kind &kind, const char *way)
{
    if (std::strcmp(way, "first") == 0)
        return measuredPictures(kind.front, kind.back);
    if (std::strcmp(way, "memory") == 0) {
        printPeakMemory("before");
        const int length = measuredPictures(kind.front, kind.back);
        printPeakMemory("after");
        return length;
    }
    const Side front = sideOf(kind.frontPath, kind.front);
    const Side back = sideOf(kind.backPath, kind.back);
    floorOf(front); // warm
    floorOf(back);
    if (std::strcmp(way, "makers") == 0)
        return measuredPictures(front.make, back.make);
    if (std::strcmp(way, "floor") == 0)
        return measuredPictures([&front] { return floorOf(front); },
                                [&back] { return floorOf(back); });
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const QGuiApplication application(argc, argv);
    if (argc != 3)
        return 2;
    for (const Kind &kind : KINDS)
        if (std::strcmp(argv[1], kind.name) == 0)
            return measure(kind, argv[2]) > 0 ? 0 : 1;
    return 2;
}
