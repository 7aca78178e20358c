// Reads the resident card on the reader and writes what the library paints of it to a file, with
// the photo, for cold_painting. scripts/check/count-read-instructions runs both.
//
// Usage: painting_record FOLDER-OF-TEMPLATES FILE

#include <memory>

#include <QFile>
#include <QGuiApplication>

#include "api/idcard_reader_api.h"
#include "bench/recorded_painting.h"
#include "common/card_records.h"
#include "render/makecardimg.h"

namespace
{

RecordedSide record(const QString &templateFile, QString (*make)(_tagIDCARD_INFO_ALL_CN *),
                    _tagIDCARD_INFO_ALL_CN *card)
{
    const PaintingRecorder recorder;
    make(card);
    return {templateFile, recorder.painted()};
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 3)
        return 2;
    struct Records {
        _tagIDCARD_INFO_ALL_CN cn{};
        _tagIDCARD_INFO_ALL_FOREIGN_2017 foreign2017{};
        _tagIDCARD_INFO_ALL_FOREIGN_NEW foreignNew{};
        _tagIDCARD_INFO_ALL_HMT hmt{};
    };
    const auto records = std::make_unique<Records>();
    unsigned int kind = 0;
    std::string front;
    std::string back;
    if (readIDCard(&kind, &records->cn, &records->foreign2017, &records->foreignNew, &records->hmt,
                   &front, &back) != 0)
        return 1;
    const QString folder = QString::fromLocal8Bit(argv[1]);
    _tagIDCARD_INFO_ALL_CN *const card = &records->cn;
    QFile file(QString::fromLocal8Bit(argv[2]));
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    QDataStream stream(&file);
    stream << record(folder + "/IDCardFront.bmp", MakeCardImg::makeIDCardCNFrontBase64, card)
           << record(folder + "/IDCardBack.bmp", MakeCardImg::makeIDCardCNBackBase64, card)
           << QByteArray(reinterpret_cast<const char *>(card->byPhoto), sizeof(card->byPhoto));
    return 0;
}
