// A host that links the library without any linker flag and defines the five functions itself.

#include "api/idcard_reader_api.h"
#include "common/closed_functions.h"

#include <cstdio>

#include <QGuiApplication>

int KVO_OpenPort(int)
{
    return KVO_SUCCESS;
}

int KVO_FindIDCard(int)
{
    return KVO_SUCCESS;
}

int KVO_ReadIDCard(int, CardInfoStruct *info, unsigned char *, unsigned int *photoLen,
                   unsigned char *, unsigned int *fpLen, int)
{
    info->kind = CARD_INFO_KIND_HMT;
    info->hmt.name[0] = 'h';
    *photoLen = IDCARD_COMPRESSED_PHOTO_SIZE;
    *fpLen = 0;
    return KVO_SUCCESS;
}

int KVO_ClosePort(int)
{
    std::fputs("host: closed\n", stderr);
    return KVO_SUCCESS;
}

int unpack(unsigned char *, unsigned char *, int)
{
    return WLT_SUCCESS;
}

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    unsigned int kind = 99;
    static _tagIDCARD_INFO_ALL_CN cn;
    static _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017;
    static _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew;
    static _tagIDCARD_INFO_ALL_HMT hmt;
    std::string front;
    std::string back;
    const int result = readIDCard(&kind, &cn, &f2017, &fNew, &hmt, &front, &back);
    std::fprintf(stderr, "host: result=%d kind=%u name=%s\n", result, kind, hmt.szName.c_str());
    return 0;
}
