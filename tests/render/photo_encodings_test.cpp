// Photos in every encoding that Qt reads, on the four kinds of card. scripts/make/sample-photos has
// made them, with programs other than this library.

#include <algorithm>
#include <array>

#include <gmock/gmock.h>
#include <malloc.h>

#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QImage>
#include <QImageWriter>
#include <QtPlugin>

#include "common/card_records.h"
#include "render/card_photo.h"
#include "tests/render/card_sides.h"
#include "tests/render/sizeless_plugin.h"
#include "tests/support/files.h"
#include "tests/support/message_log.h"

Q_IMPORT_PLUGIN(SizelessPlugin)

namespace
{

const QString FOLDER = QStringLiteral(IDCARD_SOURCE_DIR "/tests/render/photos/");

// Qt takes their headers for shorter ones.
constexpr std::array<const char *, 2> UNREADABLE = {"bmp-24-bits-header-52.bmp",
                                                    "bmp-32-bits-header-56.bmp"};

bool isUnreadable(const QString &name)
{
    return std::any_of(UNREADABLE.begin(), UNREADABLE.end(),
                       [&name](const char *it) { return name == QLatin1String(it); });
}

/** The photo area of a record: the file, and zeros. */
QByteArray photoArea(const QByteArray &file)
{
    EXPECT_LE(file.size(), int(IDCARD_PHOTO_SIZE));
    return file.leftJustified(int(IDCARD_PHOTO_SIZE), '\0');
}

QPixmap asQtReadsIt(const QByteArray &file)
{
    QPixmap pixmap;
    pixmap.loadFromData(file);
    return pixmap;
}

/** The four fronts and the texts on them. */
class PhotoEncodings : public testing::Test
{
protected:
    PhotoEncodings()
    {
        for (const CardSide &side : cardFronts())
            m_fronts.push_back({side, textsOf(side)});
    }

    /** Holds that every kind of card shows `photo` when its photo area is `area`. */
    void expectPainted(const QByteArray &area, const QPixmap &photo, const std::string &what)
    {
        for (const Front &front : m_fronts)
            EXPECT_TRUE(front.side.make(area) == composed(front.side, front.texts, photo))
                << what << " on the " << front.side.name;
    }

private:
    struct Front {
        CardSide side;
        std::vector<Painted> texts;
    };

    const MessageLog m_log; // Qt's readers complain of broken files
    std::vector<Front> m_fronts;
};

} // namespace

TEST_F(PhotoEncodings, EveryFile_IsPaintedAsQtReadsIt)
{
    const QStringList names = QDir(FOLDER).entryList(QDir::Files);
    EXPECT_GE(names.size(), 60);
    for (const QString &name : names) {
        const QByteArray area = photoArea(readFile(FOLDER + name));
        const QPixmap photo = asQtReadsIt(area);
        EXPECT_EQ(photo.isNull(), isUnreadable(name)) << name.toStdString();
        expectPainted(area, photo, name.toStdString());
    }
}

// What Qt leaves as the memory was, in run-length coded files, is another test's.
TEST_F(PhotoEncodings, EveryFileThatIsCutOff_IsPaintedAsFarAsQtReadsIt)
{
    int painted = 0;
    for (const QString &name : QDir(FOLDER).entryList(QDir::Files)) {
        if (name.contains(QStringLiteral("rle")))
            continue;
        const QByteArray file = readFile(FOLDER + name);
        const QByteArray area = photoArea(file.left(file.size() / 2));
        const QPixmap photo = asQtReadsIt(area);
        painted += photo.isNull() ? 0 : 1;
        expectPainted(area, photo, name.toStdString());
    }
    EXPECT_GE(painted, 40);
}

TEST_F(PhotoEncodings, EveryFormatThatQtWrites_IsPaintedAsQtReadsIt)
{
    const QImage picture(FOLDER + QStringLiteral("png-rgb.png"));
    // Other plug-ins are not Qt's own, and few write what fits into a record.
    const QList<QByteArray> formats = QImageWriter::supportedImageFormats();
    const char *const own[] = {"bmp", "cur", "ico", "jpeg", "jpg", "pbm",
                               "pgm", "png", "ppm", "xbm",  "xpm"};
    EXPECT_THAT(formats, testing::IsSupersetOf(own));
    for (const char *const format : own) {
        QByteArray file;
        QBuffer buffer(&file);
        EXPECT_TRUE(QImageWriter(&buffer, format).write(picture)) << format;
        const QPixmap photo = asQtReadsIt(photoArea(file));
        EXPECT_FALSE(photo.isNull()) << format;
        expectPainted(photoArea(file), photo, format);
    }
}

TEST_F(PhotoEncodings, WhatABmpLacks_IsBlackAndNotWhatMemoryHeldBefore)
{
    const QDir folder(FOLDER + QStringLiteral("lacking"));
    const QStringList names = folder.entryList({QStringLiteral("*.bmp")}, QDir::Files);
    EXPECT_GE(names.size(), 20);
    for (const QString &name : names) {
        const QString path = folder.filePath(name);
        const QByteArray area = photoArea(readFile(path));
        const QPixmap photo = asQtReadsIt(readFile(path.left(path.size() - 3) + "png"));
        ASSERT_FALSE(photo.isNull()) << name.toStdString();
        mallopt(M_PERTURB, 0x5a); // what an allocation holds at first, the other way round
        expectPainted(area, photo, name.toStdString());
        mallopt(M_PERTURB, 0);
    }
}

TEST_F(PhotoEncodings, BmpWithAnyOtherByteInItsHeaders_IsPaintedWhenQtReadsIt)
{
    int refused = 0;
    for (const char *name : {"1-bit", "4-bits-rle", "8-bits", "8-bits-rle", "24-bits", "32-bits"}) {
        const QByteArray file = readFile(FOLDER + QStringLiteral("bmp-%1.bmp").arg(name));
        for (int at = 0; at < 54; ++at) {
            if (at >= 18 && at < 26) // width and height, with which Qt needs any amount of memory
                continue;
            for (const char byte : {'\x00', '\x01', '\x0c', '\x7f', '\x80', '\xff'}) {
                QByteArray area = photoArea(file);
                area[at] = byte;
                unsigned char photo[IDCARD_PHOTO_SIZE];
                std::copy(area.begin(), area.end(), photo);
                const QPixmap fitted = fittedPhoto(photo, PhotoBackground::TRANSPARENT, {9, 9});
                const bool isRefused = QImage::fromData(area).isNull();
                EXPECT_EQ(fitted.isNull(), isRefused)
                    << name << ", byte " << at << " is " << int{byte};
                refused += isRefused ? 1 : 0;
            }
        }
    }
    EXPECT_GT(refused, 100);
}

// Qt knows neither the size nor the format of a file that ends within its headers.
TEST_F(PhotoEncodings, FileThatEndsWithinItsHeaders_IsPaintedWhenQtReadsIt)
{
    mallopt(M_PERTURB, 0x5a); // what is not set is not zero
    int refused = 0;
    for (const QString &name : QDir(FOLDER).entryList(QDir::Files)) {
        const QByteArray file = readFile(FOLDER + name);
        for (int size = 1; size < std::min(file.size(), 700); size += size < 32 ? 1 : 17) {
            const QByteArray area = photoArea(file.left(size));
            unsigned char photo[IDCARD_PHOTO_SIZE];
            std::copy(area.begin(), area.end(), photo);
            const QPixmap fitted = fittedPhoto(photo, PhotoBackground::AS_IT_IS, {9, 9});
            const bool isRefused = QImage::fromData(area).isNull();
            EXPECT_EQ(fitted.isNull(), isRefused) << name.toStdString() << " of " << size;
            refused += isRefused ? 1 : 0;
        }
    }
    mallopt(M_PERTURB, 0);
    EXPECT_GT(refused, 1000);
}

TEST_F(PhotoEncodings, EncodingThatAnnouncesNoSize_IsPaintedAsQtReadsIt)
{
    const QByteArray area = photoArea(SizelessPlugin::fileOf(QSize(40, 50)));
    const QPixmap photo = asQtReadsIt(area);
    ASSERT_EQ(photo.size(), QSize(40, 50));
    expectPainted(area, photo, "a picture without a size");
}

TEST_F(PhotoEncodings, EncodingThatAnnouncesNoSize_IsLeftOutWhenItIsTooLarge)
{
    const QByteArray area = photoArea(SizelessPlugin::fileOf(QSize(4097, 4096)));
    ASSERT_EQ(asQtReadsIt(area).size(), QSize(4097, 4096));
    expectPainted(area, QPixmap(), "a picture without a size");
}
