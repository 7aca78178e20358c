// Pictures with a part missing or hostile: no template, no photo, a photo that is none.

#include "render/card_photo.h"
#include "render/makecardimg.h"
#include "tests/render/picture_matchers.h"
#include "tests/render/sample_photo.h"
#include "tests/render/without_templates.h"
#include "tests/support/expected_warning.h"
#include "tests/support/files.h"
#include "tests/support/message_log.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>
#include <utility>

#include <gmock/gmock.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QtEndian>

namespace
{

/** All pictures of one set of records that carry `photo`. */
QStringList allPictures(const QByteArray &photo)
{
    static _tagIDCARD_INFO_ALL_CN cn;
    static _tagIDCARD_INFO_ALL_HMT hmt;
    static _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017;
    static _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew;
    hmt.szID = "81";
    for (unsigned char *area : {cn.byPhoto, hmt.byPhoto, f2017.byPhoto, fNew.byPhoto}) {
        std::memset(area, 0, IDCARD_PHOTO_SIZE);
        std::memcpy(area, photo.constData(),
                    std::min(static_cast<std::size_t>(photo.size()),
                             static_cast<std::size_t>(IDCARD_PHOTO_SIZE)));
    }
    return {MakeCardImg::makeIDCardCNFrontBase64(&cn),
            MakeCardImg::makeIDCardCNBackBase64(&cn),
            MakeCardImg::makeIDCardHmtFrontBase64(&hmt),
            MakeCardImg::makeIDCardHmtBackBase64(&hmt),
            MakeCardImg::makeIDCardF2017FrontBase64(&f2017),
            MakeCardImg::makeIDCardF2017BackBase64(&f2017),
            MakeCardImg::makeIDCardFNewFrontBase64(&fNew),
            MakeCardImg::makeIDCardFNewBackBase64(&fNew)};
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format));
    return bytes;
}

/** A picture of 102 x 126 in one colour. */
QImage red()
{
    QImage image(102, 126, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

QByteArray sampleFile(const char *name)
{
    return readFile(IDCARD_SOURCE_DIR "/tests/render/photos/" + QString::fromLatin1(name));
}

/** Writes `value` over the bytes of `bytes` at `at`, in the byte order given. */
template <typename Number>
void putNumber(QByteArray &bytes, int at, Number value, bool bigEndian)
{
    const Number stored = bigEndian ? qToBigEndian(value) : qToLittleEndian(value);
    bytes.replace(at, sizeof(stored), reinterpret_cast<const char *>(&stored), sizeof(stored));
}

/** A BMP file that claims other dimensions than its 38862 bytes hold. */
QByteArray bmpClaiming(qint32 width, qint32 height, int bits)
{
    QByteArray photo = samplePhoto();
    putNumber(photo, 18, width, false);
    putNumber(photo, 22, height, false);
    putNumber(photo, 28, static_cast<quint16>(bits), false);
    return photo;
}

/** The head of a PNG file that claims these dimensions; its checksum is right. */
QByteArray pngClaiming(quint32 size)
{
    QByteArray photo = encoded(red(), "PNG");
    putNumber(photo, 16, size, true);
    putNumber(photo, 20, size, true);
    quint32 crc = 0xffffffff;
    for (int i = 12; i < 29; ++i) {
        crc ^= static_cast<quint8>(photo.at(i));
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xedb88320 : 0);
    }
    putNumber(photo, 29, crc ^ 0xffffffff, true);
    return photo;
}

/** The most memory that the process has had resident so far, in KiB. */
long peakMemory()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word == "VmHWM:") {
            long kib = 0;
            status >> kib;
            return kib;
        }
    }
    ADD_FAILURE() << "the kernel does not say";
    return 0;
}

bool isPainted(const QByteArray &bytes)
{
    unsigned char photo[IDCARD_PHOTO_SIZE] = {};
    EXPECT_LE(bytes.size(), int(IDCARD_PHOTO_SIZE));
    std::memcpy(photo, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return !fittedPhoto(photo, PhotoBackground::TRANSPARENT, QSize(10, 10)).isNull();
}

void expectAsWithoutPhoto(const QByteArray &photo, const std::string &what)
{
    static const QStringList without = allPictures(QByteArray());
    const long before = peakMemory();
    EXPECT_EQ(allPictures(photo), without) << what;
    EXPECT_LT(peakMemory() - before, 72 * 1024) << what;
}

} // namespace

TEST(MissingTemplates, EveryMaker_GivesEmptyTextAndNoWarning)
{
    const WithoutTemplates none;
    const MessageLog log;
    for (const QString &picture : allPictures(samplePhoto()))
        EXPECT_EQ(picture, QString());
    for (const auto &message : log.messages()) {
        if (message.text.find("AA_EnableHighDpiScaling") == std::string::npos) {
            EXPECT_EQ(message.type, QtDebugMsg) << message.text;
        }
    }
}

TEST(Photo, BytesThatAreNoPicture_AreLeftOut)
{
    expectAsWithoutPhoto(QByteArray(38862, '\0'), "zeros");
    expectAsWithoutPhoto(QByteArray(38862, '\xff'), "ones");
    expectAsWithoutPhoto(QByteArray("compressed data of a reader"), "compressed data");
    expectAsWithoutPhoto(QByteArray("BM"), "a signature and nothing else");
}

TEST(Photo, HugePng_IsLeftOut)
{
    const ExpectedWarning tooLarge("libpng warning: Image ");
    for (const quint32 size : {30000U, 4097U, 1U << 30, 0x7fffffffU})
        expectAsWithoutPhoto(pngClaiming(size), "PNG");
}

TEST(Photo, HugeBmp_IsLeftOut)
{
    expectAsWithoutPhoto(bmpClaiming(30000, 30000, 24), "24 bits");
    expectAsWithoutPhoto(bmpClaiming(20000, 20000, 1), "1 bit, which becomes 32");
    expectAsWithoutPhoto(bmpClaiming(0x7fffffff, 0x7fffffff, 24), "largest numbers");
    expectAsWithoutPhoto(bmpClaiming(-102, 126, 24), "negative width");
    expectAsWithoutPhoto(bmpClaiming(0, 0, 24), "no width");
    for (const qint32 side : {134217728, -134217728}) {
        expectAsWithoutPhoto(bmpClaiming(1, side, 1), "134 million pixels upright");
        expectAsWithoutPhoto(bmpClaiming(side, 1, 1), "134 million pixels in a line");
        expectAsWithoutPhoto(bmpClaiming(side, -1, 1), "the same from the top down");
    }
}

TEST(Photo, BmpOfExtremeSides_IsLeftOut)
{
    constexpr qint32 LOWEST = std::numeric_limits<qint32>::min();
    constexpr qint32 HIGHEST = std::numeric_limits<qint32>::max();
    constexpr qint32 SIDES[] = {LOWEST, LOWEST + 1, -134217728, -65536,    -1,
                                0,      1,          65536,      134217728, HIGHEST};
    const auto fits = [](qint64 width, qint64 height) {
        return width > 0 && height != 0 && std::abs(width * height) <= 4096 * 4096;
    };
    for (const int bits : {1, 4, 8, 16, 24, 32})
        for (const qint32 width : SIDES)
            for (const qint32 height : SIDES) {
                EXPECT_EQ(isPainted(bmpClaiming(width, height, bits)), fits(width, height))
                    << width << " x " << height << ", " << bits << " bits";
            }
}

TEST(Photo, GifOnAHugeCanvas_IsLeftOut)
{
    QByteArray photo = sampleFile("gif-89.gif");
    EXPECT_NE(allPictures(photo), allPictures(QByteArray()));
    constexpr int CANVAS_AT = 6;
    for (const auto &[width, height] : {std::pair(300, 65535), std::pair(65535, 300)}) {
        putNumber(photo, CANVAS_AT, static_cast<quint16>(width), false);
        putNumber(photo, CANVAS_AT + 2, static_cast<quint16>(height), false);
        expectAsWithoutPhoto(photo, std::to_string(width) + " across");
    }
}

TEST(Photo, IconWithALargerPngThanItDeclares_IsLeftOut)
{
    QImage huge(4200, 4200, QImage::Format_Mono);
    huge.fill(0);
    const QByteArray png = encoded(huge, "PNG");
    // A directory with one picture of 16 x 16 pixels and 32 bits.
    QByteArray photo = QByteArray::fromHex("00000100 0100 10100000 0100 2000 00000000 16000000");
    putNumber<quint32>(photo, 14, static_cast<quint32>(png.size()), false);
    photo += png;
    ASSERT_LT(photo.size(), int(IDCARD_PHOTO_SIZE));
    expectAsWithoutPhoto(photo, "4200 x 4200");
}

TEST(Photo, BmpWithFewerBytesThanItClaims_DoesNoHarm)
{
    const long before = peakMemory();
    for (const QString &picture : allPictures(bmpClaiming(1000, 1000, 24)))
        EXPECT_FALSE(picture.isEmpty());
    EXPECT_LT(peakMemory() - before, 72 * 1024);
}

TEST(Photo, NarrowAndFlatPictures_DoNoHarm)
{
    for (const QSize size : {QSize(1, 1), QSize(1, 5000), QSize(5000, 1)}) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::blue);
        for (const QString &picture : allPictures(encoded(image, "PNG")))
            EXPECT_FALSE(picture.isEmpty());
    }
}

// The last, as what the other tests measure is the most memory so far.
TEST(Photo, PictureOfSixtyFourMebibytes_IsTheLargestThatIsPainted)
{
    const auto png = [](int width, int height) {
        QImage image(width, height, QImage::Format_Grayscale8);
        image.fill(0);
        return encoded(image, "PNG");
    };
    EXPECT_TRUE(isPainted(png(4096, 4096)));
    EXPECT_FALSE(isPainted(png(4097, 4096)));
    constexpr int MOST_PIXELS = 4096 * 4096;
    EXPECT_TRUE(isPainted(bmpClaiming(MOST_PIXELS, 1, 1)));
    EXPECT_TRUE(isPainted(bmpClaiming(1, -MOST_PIXELS, 24)));
    for (const int bits : {1, 24}) {
        EXPECT_FALSE(isPainted(bmpClaiming(MOST_PIXELS + 1, -1, bits))) << bits;
        EXPECT_FALSE(isPainted(bmpClaiming(1, MOST_PIXELS + 1, bits))) << bits;
    }
}
