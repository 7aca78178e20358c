// A program of somebody else's that brings its own reader: it only links the library and defines
// the five closed functions.

#include "api/idcard_reader_api.h"
#include "common/closed_functions.h"
#include "common/country_code_list.h"

#include <cstdio>
#include <cstring>

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
    info->kind = CARD_INFO_KIND_CN;
    std::memcpy(info->cn.name, "\x8b\x73\x94\x4e", 4); // 王五
    *photoLen = IDCARD_PHOTO_SIZE;
    *fpLen = 0;
    return KVO_SUCCESS;
}

int KVO_ClosePort(int)
{
    return KVO_SUCCESS;
}

int unpack(unsigned char *, unsigned char *, int)
{
    return 0;
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
    if (result != 0 || kind != IDCARD_KIND_CN || front.empty() || back.empty() ||
        COUNTRY_CODE_LIST[43][1] != "CHN" || getSDKVersion() != "version:1.5.0") {
        std::fprintf(stderr, "host: result %d, kind %u\n", result, kind);
        return 1;
    }
    std::printf("read: %s\n", cn.szName.c_str());
    return 0;
}
