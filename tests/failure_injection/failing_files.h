#pragma once

// Calls that change files, which fail, or bring a signal, where a test says: in a test program
// whose functions go before the C library's, or in a program that is started with this as a
// preloaded library and with
//
//     IDCARD_FAILING_CALL="function position errno folder"
//
// Only calls count that are about something in the folder: a path below it, or an open file there.

#include <string>
#include <vector>

namespace failure_injection
{

/** One call that fails, or before which a signal comes. */
struct FailingFileCall {
    std::string function; ///< one of `FILE_FUNCTIONS`; empty: none fails
    int position;         ///< among the calls of it in the folder, counted from 1; 0 only counts
    int error;            ///< errno afterwards; negative: of the signal, and the call succeeds
    std::string folder;   ///< absolute
};

inline constexpr const char *FILE_FUNCTIONS[] = {"open",   "write",  "fsync", "close", "link",
                                                 "rename", "unlink", "mkdir", "rmdir"};

/** From now on these calls fail, and the count of calls restarts. */
void setFailingFileCalls(const std::vector<FailingFileCall> &calls);

/** How often the function of the first, or of the last, that was set has been called. */
int fileCallsMade();
int lastFileCallsMade();

} // namespace failure_injection
