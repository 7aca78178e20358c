#include "tests/failure_injection/failing_calls.h"

#include <cerrno>
#include <cstddef>
#include <cstring>

#include <dlfcn.h>
#include <iconv.h>

namespace
{

failure_injection::FailingCall failing{nullptr, 0, 0};
int callCount = 0;
int converterCount = 0;

constexpr const char *LOADER_VERSION = "GLIBC_2.34"; // since which the loader's calls are in libc
#if defined(__x86_64__)
constexpr const char *FIRST_VERSION = "GLIBC_2.2.5";
#else
constexpr const char *FIRST_VERSION = "GLIBC_2.17";
#endif

/** The real function, of the version that programs of today are linked with. */
template <typename Function>
Function *real(const char *name)
{
    void *function = dlvsym(RTLD_NEXT, name, LOADER_VERSION);
    if (function == nullptr)
        function = dlvsym(RTLD_NEXT, name, FIRST_VERSION);
    return reinterpret_cast<Function *>(function);
}

bool isOfTheLibrary(const void *caller)
{
    Dl_info info{};
    return dladdr(caller, &info) != 0 &&
           std::strstr(info.dli_fname, "idcard_reader_lib") != nullptr;
}

/** Counts the call of `function` that `caller` makes; whether it fails. */
bool fails(const char *function, const void *caller)
{
    if (failing.function == nullptr || std::strcmp(function, failing.function) != 0 ||
        !isOfTheLibrary(caller))
        return false;
    if (++callCount != failing.position)
        return false;
    errno = failing.error;
    return true;
}

} // namespace

void failure_injection::setFailingCall(const FailingCall &call)
{
    failing = call;
    callCount = 0;
    converterCount = 0;
}

int failure_injection::callsMade()
{
    return callCount;
}

int failure_injection::openConverters()
{
    return converterCount;
}

#define EXPORTED __attribute__((visibility("default")))

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): these have plainer names
extern "C" {

EXPORTED void *dlopen(const char *file, int flags) noexcept
{
    const auto open = real<void *(const char *, int)>("dlopen");
    // The loader needs a reason that it can give.
    return open(fails("dlopen", __builtin_return_address(0)) ? "/nowhere/library.so" : file, flags);
}

EXPORTED void *dlsym(void *__restrict handle, const char *__restrict name) noexcept
{
    const auto find = real<void *(void *, const char *)>("dlsym");
    return find(handle, fails("dlsym", __builtin_return_address(0)) ? "no such function" : name);
}

EXPORTED iconv_t iconv_open(const char *to, const char *from)
{
    const void *const caller = __builtin_return_address(0);
    if (fails("iconv_open", caller))
        return reinterpret_cast<iconv_t>(-1); // NOLINT(performance-no-int-to-ptr): POSIX says so
    converterCount += isOfTheLibrary(caller) ? 1 : 0;
    return real<iconv_t(const char *, const char *)>("iconv_open")(to, from);
}

EXPORTED std::size_t iconv(iconv_t converter, char **__restrict in, std::size_t *__restrict inLeft,
                           char **__restrict out, std::size_t *__restrict outLeft)
{
    if (fails("iconv", __builtin_return_address(0)))
        return static_cast<std::size_t>(-1);
    using Function = std::size_t(iconv_t, char **, std::size_t *, char **, std::size_t *);
    return real<Function>("iconv")(converter, in, inLeft, out, outLeft);
}

EXPORTED int iconv_close(iconv_t converter)
{
    converterCount -= isOfTheLibrary(__builtin_return_address(0)) ? 1 : 0;
    return real<int(iconv_t)>("iconv_close")(converter);
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
