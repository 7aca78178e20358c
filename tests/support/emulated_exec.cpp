// Under the emulator a program cannot start another one for its processor: the system has none
// such. This takes the place of the C library's function, in a test and in all that it starts, and
// starts such a program under the emulator in its turn.

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <elf.h>
#include <unistd.h>

namespace
{

bool isForThisProcessor(const char *file)
{
    Elf64_Ehdr header{};
    std::ifstream(file, std::ios::binary).read(reinterpret_cast<char *>(&header), sizeof(header));
    return std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 && header.e_machine == EM_AARCH64;
}

bool begins(const char *text, const char *start)
{
    return std::strncmp(text, start, std::strlen(start)) == 0;
}

} // namespace

extern "C" [[gnu::visibility("default")]] int execvpe(const char *file, char *const arguments[],
                                                      char *const environment[]) noexcept
{
    const auto next = reinterpret_cast<decltype(&execvpe)>(dlsym(RTLD_NEXT, "execvpe"));
    char *const emulator = std::getenv("IDCARD_TEST_EMULATOR");
    if (emulator == nullptr || !isForThisProcessor(file))
        return next(file, arguments, environment);

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
    return next(emulator, command.data(), settings.data());
}
