#pragma once

// A host may end a thread in the library with pthread_cancel. The C library unwinds the thread then
// as an exception would, and ends the process where something stops that: a catch-all that does not
// throw again, or a function that is noexcept.

#include <cxxabi.h>
#include <pthread.h>

/**
 * While it lives, a cancellation of this thread waits: for what must not be left halfway, and for
 * what may not be unwound.
 */
class CancellationHold
{
public:
    CancellationHold() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_before); }
    ~CancellationHold() { pthread_setcancelstate(m_before, nullptr); }
    CancellationHold(const CancellationHold &) = delete;
    CancellationHold &operator=(const CancellationHold &) = delete;

private:
    int m_before = PTHREAD_CANCEL_ENABLE;
};

/** What `call` returns, or `failure` when it throws. A thread that is cancelled in it unwinds. */
template <typename Result, typename Call>
__attribute__((no_sanitize("null"))) // what unwinds the thread is caught as a null reference
Result
resultOf(Call call, Result failure)
{
    try {
        return call();
    } catch (abi::__forced_unwind &) {
        throw;
    } catch (...) {
        return failure;
    }
}
