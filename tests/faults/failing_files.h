#pragma once

// Calls that change files, which fail where a test says: in a test program whose functions go
// before the C library's, or in a program that is started with this as a preloaded library and told
// by
//
//     IDCARD_FAILING_CALL="function position errno folder"
//
// Only calls count that are about something in the folder: a path below it, or an open file there.

#include <string>

namespace faults
{

/** One call that fails. */
struct FailingFileCall {
    std::string function; ///< one of `FILE_FUNCTIONS`; empty: none fails
    int position;         ///< among the calls of it in the folder, counted from 1; 0 only counts
    int error;            ///< errno afterwards
    std::string folder;   ///< absolute
};

inline constexpr const char *FILE_FUNCTIONS[] = {"open",   "write",  "fsync", "close", "link",
                                                 "rename", "unlink", "mkdir", "rmdir"};

/** From now on this call fails, and calls are counted anew. */
void setFailingFileCall(const FailingFileCall &call);

/** How often the function that was set has been called. */
int fileCallsMade();

} // namespace faults
