// A reader maker's library whose reading function fails in a way that C knows nothing of.

#include <stdexcept>

#include "common/closed_functions.h"

int KVO_OpenPort(int /*port*/)
{
    return KVO_SUCCESS;
}

int KVO_FindIDCard(int /*port*/)
{
    return KVO_SUCCESS;
}

int KVO_ReadIDCard(int /*port*/, CardInfoStruct * /*info*/, unsigned char * /*photo*/,
                   unsigned int * /*photoLen*/, unsigned char * /*fp*/, unsigned int * /*fpLen*/,
                   int /*flag*/)
{
    throw std::runtime_error("the reader was unplugged");
}

int KVO_ClosePort(int /*port*/)
{
    return KVO_SUCCESS;
}
