#pragma once

// The entry that every fuzz target defines, the same for the fuzzer and for the program that
// replays a corpus, and what the targets share.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/** Handles one input. Ends the process when what the code under test promises does not hold. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/** Run once before the first input. */
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);

/** A promise of the code under test. */
inline void demand(bool holds)
{
    if (!holds)
        std::abort();
}
