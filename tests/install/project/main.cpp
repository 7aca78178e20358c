// A program of somebody else's: reads the card on the reader and says what it says.

#include <cstdio>

#include <QGuiApplication>

#include <api/idcard_reader_api.h>
#include <iddata/iddata.h>
#include <reader/usbidreader.h>

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
    // The other road is linked, too; there is no reader on the bus of these ids.
    const CUsbIdReader usb(0xFFFF, 0xFFFF);
    QByteArray noRecord;
    std::printf("result %d, kind %u, %s, %s, pictures %s, usb %s, ethnic group %s\n", result, kind,
                cn.szName.c_str(), cn.szID.c_str(), front.empty() || back.empty() ? "no" : "yes",
                usb.lastError() < 0 ? "absent" : "present",
                CIdData(noRecord, FP_INFO_NONE).GetNation(1).c_str());
    return result;
}
