#include "tests/failure_injection/failing_files.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

struct State {
    failure_injection::FailingFileCall call{{}, 0, 0, {}};
    int count = 0;
};

/** What fails, at first as the environment says. */
std::vector<State> &states()
{
    static std::vector<State> all = [] {
        State fromEnvironment;
        const char *const text = std::getenv("IDCARD_FAILING_CALL");
        std::array<char, 16> function{};
        std::array<char, 512> folder{};
        failure_injection::FailingFileCall &call = fromEnvironment.call;
        // NOLINTNEXTLINE(cert-err34-c): a test of ours has written it
        if (text != nullptr && std::sscanf(text, "%15s %d %d %511s", function.data(),
                                           &call.position, &call.error, folder.data()) == 4) {
            call.function = function.data();
            call.folder = folder.data();
        }
        return std::vector<State>{fromEnvironment};
    }();
    return all;
}

bool isInFolder(const std::string &folder, const char *path)
{
    if (path == nullptr)
        return false;
    std::string whole = path;
    std::array<char, 4096> here{};
    if (*path != '/' && ::getcwd(here.data(), here.size()) != nullptr)
        whole = std::string(here.data()) + '/' + path;
    return whole.rfind(folder, 0) == 0;
}

bool isInFolder(const std::string &folder, int descriptor)
{
    std::array<char, 64> link{};
    std::array<char, 4096> target{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    return ::readlink(link.data(), target.data(), target.size() - 1) > 0 &&
           isInFolder(folder, target.data());
}

/** Counts a call of `function` that is about `place`; whether it fails. */
template <typename Place>
bool fails(const char *function, Place place)
{
    bool isFailing = false;
    for (State &now : states()) {
        if (now.call.function != function || !isInFolder(now.call.folder, place) ||
            ++now.count != now.call.position)
            continue;
        if (now.call.error < 0) {
            ::kill(::getpid(), -now.call.error);
            continue;
        }
        errno = now.call.error;
        isFailing = true;
    }
    return isFailing;
}

template <typename Function>
Function *real(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

void failure_injection::setFailingFileCalls(const std::vector<FailingFileCall> &calls)
{
    states().clear();
    for (const FailingFileCall &call : calls)
        states().push_back({call, 0});
}

int failure_injection::fileCallsMade()
{
    return states().front().count;
}

int failure_injection::lastFileCallsMade()
{
    return states().back().count;
}

#define EXPORTED __attribute__((visibility("default")))

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): these have plainer names
extern "C" {

EXPORTED int open(const char *path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t); // not looked at unless the flags ask for it
    va_end(arguments);
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    return writes && fails("open", path)
               ? -1
               : real<int(const char *, int, ...)>("open")(path, flags, mode);
}

EXPORTED int open64(const char *path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    return writes && fails("open", path)
               ? -1
               : real<int(const char *, int, ...)>("open64")(path, flags, mode);
}

EXPORTED ssize_t write(int descriptor, const void *bytes, std::size_t size)
{
    return fails("write", descriptor)
               ? -1
               : real<ssize_t(int, const void *, std::size_t)>("write")(descriptor, bytes, size);
}

EXPORTED int fsync(int descriptor)
{
    return fails("fsync", descriptor) ? -1 : real<int(int)>("fsync")(descriptor);
}

EXPORTED int close(int descriptor)
{
    const bool isFailing = fails("close", descriptor); // and is closed all the same
    const int error = errno;
    const int result = real<int(int)>("close")(descriptor);
    errno = isFailing ? error : errno;
    return isFailing ? -1 : result;
}

EXPORTED int link(const char *from, const char *to) noexcept
{
    return fails("link", to) ? -1 : real<int(const char *, const char *)>("link")(from, to);
}

EXPORTED int linkat(int fromFolder, const char *from, int toFolder, const char *to,
                    int flags) noexcept
{
    using Function = int(int, const char *, int, const char *, int);
    return fails("link", to) ? -1 : real<Function>("linkat")(fromFolder, from, toFolder, to, flags);
}

EXPORTED int rename(const char *from, const char *to) noexcept
{
    return fails("rename", to) ? -1 : real<int(const char *, const char *)>("rename")(from, to);
}

EXPORTED int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
                       unsigned int flags) noexcept
{
    using Function = int(int, const char *, int, const char *, unsigned int);
    return fails("rename", to) ? -1
                               : real<Function>("renameat2")(fromFolder, from, toFolder, to, flags);
}

EXPORTED int unlink(const char *path) noexcept
{
    return fails("unlink", path) ? -1 : real<int(const char *)>("unlink")(path);
}

EXPORTED int mkdir(const char *path, mode_t mode) noexcept
{
    return fails("mkdir", path) ? -1 : real<int(const char *, mode_t)>("mkdir")(path, mode);
}

EXPORTED int rmdir(const char *path) noexcept
{
    return fails("rmdir", path) ? -1 : real<int(const char *)>("rmdir")(path);
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
