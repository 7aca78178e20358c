// Under the emulator a program cannot start another one for its processor: the system has none
// such. This takes the place of the C library's function, in a test and in all that it starts, and
// starts such a program under the emulator in its turn.
//
// It runs in a child between fork and exec, where a lock may be held for ever by a thread that only
// the parent has. The emulated bus has locks in its `open`, `read` and `close`; hence `syscall`.

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

bool isForThisProcessor(const char *file)
{
    Elf64_Ehdr header{};
    const long opened = syscall(SYS_openat, AT_FDCWD, file, O_RDONLY | O_CLOEXEC);
    syscall(SYS_read, opened, &header, sizeof(header));
    syscall(SYS_close, opened);
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_machine == EM_AARCH64;
}

bool begins(const char *text, const char *start)
{
    return std::strncmp(text, start, std::strlen(start)) == 0;
}

const auto NEXT = reinterpret_cast<decltype(&execvpe)>(dlsym(RTLD_NEXT, "execvpe"));

} // namespace

extern "C" [[gnu::visibility("default")]] int execvpe(const char *file, char *const arguments[],
                                                      char *const environment[]) noexcept
{
    char *const emulator = std::getenv("IDCARD_TEST_EMULATOR");
    if (emulator == nullptr || !isForThisProcessor(file))
        return NEXT(file, arguments, environment);

    char set[] = "-E"; // for the loader inside; the emulator's own loader must not see it
    std::vector<char *> command = {emulator};
    std::vector<char *> settings;
    std::string preload = "LD_PRELOAD=";
    for (; *environment != nullptr; ++environment) {
        if (begins(*environment, "LD_PRELOAD="))
            preload = *environment;
        else if (begins(*environment, "LD_"))
            command.insert(command.end(), {set, *environment});
        else
            settings.push_back(*environment);
    }
    preload += ":" IDCARD_EMULATED_EXEC;
    command.insert(command.end(), {set, preload.data(), const_cast<char *>(file)});
    while (*++arguments != nullptr)
        command.push_back(*arguments);
    command.push_back(nullptr);
    settings.push_back(nullptr);
    return NEXT(emulator, command.data(), settings.data());
}
