// A program of somebody else's that loads the library at run time: LOADER LIBRARY

#include "api/idcard_reader_api.h"

#include <cstdio>

#include <dlfcn.h>

int main(int argc, char **argv)
{
    void *const library = argc == 2 ? dlopen(argv[1], RTLD_NOW) : nullptr;
    if (library == nullptr) {
        std::fprintf(stderr, "loader: %s\n", argc == 2 ? dlerror() : "no library");
        return 1;
    }
    const auto version =
        reinterpret_cast<decltype(&getSDKVersion)>(dlsym(library, "getSDKVersion"));
    const auto read = reinterpret_cast<decltype(&readIDCard)>(dlsym(library, "readIDCard"));
    const int result = read(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    std::printf("loaded: %s, %d\n", version().c_str(), result);
    return result == IDCARD_RESULT_NULL_CARD_KIND ? 0 : 1;
}
