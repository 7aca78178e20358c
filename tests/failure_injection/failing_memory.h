#pragma once

// The memory of a test program, which fails where a test says: the program's own malloc family and
// operator new go before those of the C and C++ libraries, also for Qt, libusb and the library
// under test. Not to be had together with a sanitizer, which has a malloc of its own.
//
// Allocations are counted from 1, in the one thread that has started it. What stands for a kernel
// or a closed library (umockdev, glib) and the test itself never lack memory.

#include <cstddef>
#include <string>
#include <vector>

namespace failure_injection
{

/** Which allocations fail. */
enum class Extent {
    ONE,           ///< the one at the position
    AND_ALL_AFTER, ///< and every one that follows it, until memory is back after a thousand
};

/**
 * From now on this thread's allocations are counted and their blocks accounted for, and those from
 * `position` on fail as `extent` says; 0 lets none fail.
 */
void startMemory(long position, Extent extent = Extent::ONE);

/** Ends it; returns how many allocations were counted. Blocks remain accounted for until freed. */
long stopMemory();

/** How many allocations have failed since the start. */
long failedAllocations();

/** The innermost functions that asked for the first of them. */
std::string placeOfFailure();

/** While it lives, this thread's memory neither fails nor counts, as before the start. */
class MemoryPause
{
public:
    MemoryPause();
    ~MemoryPause();
    MemoryPause(const MemoryPause &) = delete;
    MemoryPause &operator=(const MemoryPause &) = delete;

private:
    bool m_before;
};

/** Forgets every block and begins a new account; `withPlaces` records where each comes from. */
void startAccount(bool withPlaces);

/** Forgets every block for good; for a signal handler, which may have interrupted the account. */
void dropAccount();

/** How many accounted blocks were not freed. */
int liveBlocks();

/** For each of them, when places were asked for, the functions that led to it, innermost first. */
std::vector<std::string> placesOfLiveBlocks();

/** "module function", or "module+offset" where the function has no name. */
std::string placeOf(const void *address);

/** The innermost places of `count` addresses that say something: no allocator, no test. */
std::string innermostPlaces(void *const *addresses, int count, int places);

} // namespace failure_injection
