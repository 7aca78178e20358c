// readIDCard of one card of each kind with every allocation failing in turn: no exception, no open
// port, nothing half written, nothing lost; and what Qt makes of it while it paints. With
// IDCARD_TEST_EVERY_ALLOCATION set, really every one, and a table on standard output.

#include "tests/failure_injection/read_sweep.h"
#include "tests/support/test_name.h"

#include <iostream>

namespace
{

using namespace failure_injection;

// Steps up to the pictures and through the painting; primes, so that no loop in it hides.
#ifdef IDCARD_TEST_SAMPLE
constexpr Strides STRIDES{11, 211};
#else
constexpr Strides STRIDES{1, 97};
#endif
constexpr Strides EVERY_ONE{1, 1};

bool everyAllocation()
{
    return qEnvironmentVariableIsSet("IDCARD_TEST_EVERY_ALLOCATION");
}

int sum(const std::map<QString, int> &counts)
{
    int total = 0;
    for (const auto &[place, count] : counts)
        total += count;
    return total;
}

void print(const char *what, const std::map<QString, int> &counts)
{
    for (const auto &[place, count] : counts)
        std::cout << "    " << what << ' ' << count << ": " << place.toStdString() << '\n';
}

/** The row of scripts/check/failure-injection, and what the figures in it consist of. */
void print(const Card &card, Extent extent, const ReadFigures &figures)
{
    std::cout << "| " << card.name << " | " << (extent == Extent::ONE ? "one" : "all that follow")
              << " | " << figures.allocations << " | " << figures.beforePictures << " | "
              << figures.reads << " | " << figures.refused << " | " << figures.whole << " | "
              << sum(figures.plainer) << " | " << sum(figures.crashes) << " | "
              << sum(figures.hangs) << " | " << figures.losing << " |\n";
    print("plainer", figures.plainer);
    print("crash", figures.crashes);
    print("hang", figures.hangs);
    print("lost", figures.losses);
}

class ReadMemory : public testing::TestWithParam<std::tuple<int, Extent>>
{
};

INSTANTIATE_TEST_SUITE_P(EachKind, ReadMemory,
                         testing::Combine(testing::Range(0, 4),
                                          testing::Values(Extent::ONE, Extent::AND_ALL_AFTER)),
                         [](const auto &instance) {
                             return testName(cardsOfEachKind()[std::get<0>(instance.param)].name) +
                                    (std::get<1>(instance.param) == Extent::ONE ? "_one"
                                                                                : "_all_after");
                         });

} // namespace

TEST_P(ReadMemory, RunsOut_NothingIsHalfWrittenAndOursNeitherCrashesNorLosesAnything)
{
    const auto &[kind, extent] = GetParam();
    const Card &card = cardsOfEachKind()[kind];
    const ReadFigures figures = sweepRead(card, extent, everyAllocation() ? EVERY_ONE : STRIDES);
    EXPECT_GT(figures.beforePictures, 20);
    EXPECT_GT(figures.refused, 2);
    for (const QString &complaint : figures.complaints)
        ADD_FAILURE() << complaint.toStdString();
    for (const auto *const counts : {&figures.crashes, &figures.hangs, &figures.losses})
        for (const auto &[place, count] : *counts)
            EXPECT_FALSE(place.contains(QLatin1String("libidcard_reader"))) << place.toStdString();
    print(card, extent, figures);
}
