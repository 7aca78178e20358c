// A maker's library with one fault, chosen when it is compiled.

#include <csignal>
#include <cstdlib>

#include <sys/prctl.h>
#include <unistd.h>

namespace
{

struct AtLoading {
    AtLoading()
    {
#if defined(CRASHES)
        std::abort();
#elif defined(EXITS)
        _exit(3);
#elif defined(HANGS)
        pause();
#elif defined(HANGS_IN_CHILD)
        int signal = 0; // with which the process dies when its parent does
        if (prctl(PR_GET_PDEATHSIG, &signal) == 0 && signal == SIGKILL)
            pause();
#elif defined(WRITES)
        // As much as fits and more: what nobody wants to read must not fill a pipe.
        for (int i = 0; i < 20000; ++i)
            if (write(STDOUT_FILENO, "noise\n", 6) < 0)
                break;
#endif
    }
} atLoading; // NOLINT(readability-identifier-naming)

} // namespace

#if defined(NEEDS_ANOTHER)
extern "C" [[gnu::visibility("default")]] int neededFunction();
#endif

extern "C" {

#pragma GCC visibility push(default)

int KVO_OpenPort(int port)
{
#if defined(NEEDS_ANOTHER)
    return port + neededFunction();
#else
    return port;
#endif
}

#if !defined(LACKS_FUNCTIONS)
int KVO_FindIDCard(int port)
{
    return port;
}

int KVO_ReadIDCard(int port)
{
    return port;
}

int KVO_ClosePort(int port)
{
    return port;
}

int unpack()
{
    return 0;
}
#endif

#pragma GCC visibility pop
}
