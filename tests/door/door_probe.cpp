// Loads the library given by path and reads one card through it; prints the outcome on standard
// error, since standard output belongs to the library's own messages.
//
// Usage: door_probe LIBRARY [global FILE | passing FILE | unload | elsewhere]
//   global FILE  loads FILE for the whole process after the library was loaded
//   passing FILE the same, and reads once more after FILE was closed again
//   unload       closes the library after the read and prints whether it is gone
//   elsewhere    reads in another working folder than the one in which it loads the library

#include "api/idcard_reader_api.h"

#include <cstdio>
#include <cstring>

#include <dlfcn.h>
#include <unistd.h>

#include <QFile>
#include <QGuiApplication>

namespace
{

void *load(const char *file, int flags)
{
    void *const handle = dlopen(file, flags);
    if (handle == nullptr)
        std::fprintf(stderr, "probe: %s\n", dlerror());
    return handle;
}

/** Whether the library's bundle of templates is registered with Qt. */
bool templatesThere()
{
    return QFile::exists(QStringLiteral(":/Pics/hmt_front.bmp"));
}

void readOnce(void *library)
{
    const auto read = reinterpret_cast<decltype(&readIDCard)>(dlsym(library, "readIDCard"));
    unsigned int kind = 99;
    static _tagIDCARD_INFO_ALL_CN cn;
    static _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017;
    static _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew;
    static _tagIDCARD_INFO_ALL_HMT hmt;
    std::string front;
    std::string back;
    const int result = read(&kind, &cn, &f2017, &fNew, &hmt, &front, &back);
    std::fprintf(stderr, "probe: result=%d kind=%u name=%s\n", result, kind, cn.szName.c_str());
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    if (argc < 2)
        return 2;
    void *const library = load(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return 1;
    void *const definitions = argc == 4 ? load(argv[3], RTLD_NOW | RTLD_GLOBAL) : nullptr;
    if (argc == 4 && definitions == nullptr)
        return 1;
    if (argc == 3 && std::strcmp(argv[2], "elsewhere") == 0 && chdir("/") != 0)
        return 1;
    readOnce(library);
    if (argc == 4 && std::strcmp(argv[2], "passing") == 0) {
        dlclose(definitions);
        const bool gone = dlopen(argv[3], RTLD_NOW | RTLD_NOLOAD) == nullptr;
        std::fprintf(stderr, "probe: %s\n", gone ? "unloaded" : "still loaded");
        readOnce(library);
    }
    if (argc == 3 && std::strcmp(argv[2], "unload") == 0) {
        const bool before = templatesThere();
        dlclose(library);
        const bool gone = dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) == nullptr;
        std::fprintf(stderr, "probe: %s, templates %s and %s\n", gone ? "unloaded" : "still loaded",
                     before ? "there" : "missing", templatesThere() ? "still there" : "gone");
        void *const again = load(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (again == nullptr)
            return 1;
        readOnce(again);
    }
    return 0;
}
