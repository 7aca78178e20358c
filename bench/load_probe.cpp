// Loads the shared objects named on the command line, in their order, and ends. Started by
// load_benchmark, and by hand under a counter of instructions.
//
// Usage: load_probe [--memory] FILE...
//   --memory  prints the process's resident memory in KiB after the last one

#include <cstdio>
#include <cstring>

#include <dlfcn.h>

namespace
{

/** Prints the line of resident memory that the kernel keeps of this process. */
bool printResidentMemory()
{
    std::FILE *const status = std::fopen("/proc/self/status", "r");
    if (status == nullptr)
        return false;
    char line[256];
    bool found = false;
    while (!found && std::fgets(line, sizeof(line), status) != nullptr) {
        found = std::strncmp(line, "VmRSS:", 6) == 0;
        if (found)
            std::fputs(line, stdout);
    }
    std::fclose(status);
    return found;
}

} // namespace

int main(int argc, char **argv)
{
    int first = 1;
    const bool memory = argc > 1 && std::strcmp(argv[1], "--memory") == 0;
    if (memory)
        ++first;
    for (int i = first; i < argc; ++i) {
        if (dlopen(argv[i], RTLD_NOW) == nullptr) {
            std::fprintf(stderr, "load_probe: %s\n", dlerror());
            return 1;
        }
    }
    return memory && !printResidentMemory() ? 1 : 0;
}
