#pragma once

// Calls of the C library that fail where a test says. Only those count that the library under test
// makes itself; everybody else, such as Qt, gets the real function.

namespace failure_injection
{

/** One call that fails. */
struct FailingCall {
    const char *function; ///< "dlopen", "dlsym", "iconv_open" or "iconv"; null: none fails
    int position;         ///< among the library's calls of it, counted from 1; 0 only counts
    int error;            ///< errno afterwards
};

/** From now on this call fails, and the count of calls restarts. */
void setFailingCall(const FailingCall &call);

/** How often the library has called the function that was set. */
int callsMade();

/** Converters that the library has opened and not closed, since the call was set. */
int openConverters();

} // namespace failure_injection
