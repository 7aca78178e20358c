// The makers' two libraries, broken: reading a card throws, and decoding a photo never ends.

#include <stdexcept>

#include <unistd.h>

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

int unpack(unsigned char * /*src*/, unsigned char * /*dst*/, int /*mode*/)
{
    for (;;)
        ::pause();
}
