// Stands in for an older Qt and for a library of another version, in a program that preloads it.

#include "api/idcard_reader_api.h"

extern "C" [[gnu::visibility("default")]] const char *qVersion()
{
    return "5.9.5";
}

std::string getSDKVersion()
{
    return "version:0.9.0";
}
