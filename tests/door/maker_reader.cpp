// Stand-in for the reader maker's shared object: one resident card with a compressed photo, whose
// holder's name shows which file was loaded.

#include "common/closed_functions.h"

#include <cstring>

/** For a test that asks whether the port was closed. */
extern "C" {
IDCARD_READER_EXPORT bool makersPortIsOpen = false;
}

int KVO_OpenPort(int port)
{
    makersPortIsOpen = true;
    return port == KVO_PORT ? KVO_SUCCESS : 0;
}

int KVO_FindIDCard(int port)
{
    return port == KVO_PORT ? KVO_SUCCESS : 0;
}

int KVO_ReadIDCard(int, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                   unsigned char *, unsigned int *fpLen, int)
{
    info->kind = CARD_INFO_KIND_CN;
    for (std::size_t i = 0; i < std::strlen(HOLDER_NAME); ++i)
        info->cn.name[2 * i] = static_cast<unsigned char>(HOLDER_NAME[i]);
    photo[0] = 'c';
    *photoLen = 1024;
    *fpLen = 0;
    return KVO_SUCCESS;
}

#ifndef WITHOUT_CLOSE_PORT
int KVO_ClosePort(int)
{
    makersPortIsOpen = false;
    return KVO_SUCCESS;
}
#endif
