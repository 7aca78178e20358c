// canary_host COMMAND [FILE]: a host that does one thing with the library and prints nothing of its
// own, so that whatever comes out is the library's doing. "read" reads a card with readIDCard;
// "decode" decodes the raw record in FILE; "prints" writes its fingerprints as well; "usb" reads
// over USB. Ends with what the library returned, without its sign.

#include <cstdlib>
#include <memory>

#include <QFile>
#include <QGuiApplication>

#include "api/idcard_reader_api.h"
#include "apps/card/card.h"
#include "apps/reading/simulator_library.h"
#include "iddata/iddata.h"
#include "reader/reader_frames.h"
#include "reader/usbidreader.h"

namespace
{

int read()
{
    const auto records = std::make_unique<app::CardRecords>();
    unsigned int kind = 0;
    std::string front;
    std::string back;
    return -readIDCard(&kind, &records->cn, &records->foreign2017, &records->foreignNew,
                       &records->hmt, &front, &back);
}

void decode(QByteArray record, bool savesPrints)
{
    auto *const bytes = reinterpret_cast<unsigned char *>(record.data());
    unsigned char *const text = bytes + reader_frames::TEXT_OFFSET;
    CIdData decoder(record, FP_INFO_TWO);
    auto kind = ID_TYPE_CN;
    decoder.parseIDType(text, &kind);
    app::CardTexts texts;
    if (kind == ID_TYPE_CN)
        decoder.parseChinaIdText(text, &texts.cn);
    else if (kind == ID_TYPE_HMT)
        decoder.parseHMTIDText(text, &texts.hmt);
    else if (kind == ID_TYPE_FOREIGN_2017)
        decoder.parseForeign2017IDText(text, &texts.foreign2017);
    else
        decoder.parseForeignNewIDText(text, &texts.foreignNew);
    QByteArray photo(IDCARD_PHOTO_SIZE, '\0');
    decoder.parseIDHeadImage(bytes + reader_frames::PHOTO_OFFSET,
                             reinterpret_cast<unsigned char *>(photo.data()));
    if (savesPrints && record.size() == reader_frames::READ_ANSWER_SIZE_TWO_PRINTS)
        decoder.saveFpRawDataToFile(FP_INFO_TWO, bytes + reader_frames::PRINTS_OFFSET);
}

int readOverUsb()
{
    constexpr unsigned short VENDOR = 0x1209;
    constexpr unsigned short PRODUCT = 0x0001;
    CUsbIdReader reader(VENDOR, PRODUCT);
    QByteArray record;
    FP_INFO_TYPE prints = FP_INFO_NONE;
    reader.fetch_data(record, prints);
    return -reader.lastError();
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QString command = application.arguments().value(1);
    QFile file(application.arguments().value(2));
    const QByteArray record = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    // In place of the makers' libraries.
    if (app::SimulatorLibrary().load())
        return EXIT_FAILURE;
    if (command == QLatin1String("read"))
        return read();
    if (command == QLatin1String("usb"))
        return readOverUsb();
    if (record.size() < reader_frames::READ_ANSWER_SIZE_NO_PRINT)
        return EXIT_FAILURE;
    decode(record, command == QLatin1String("prints"));
    return EXIT_SUCCESS;
}
