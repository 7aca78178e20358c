#include "render/card_photo.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QtEndian>

#include "render/plain_bmp.h"
#include "render/tools.h"

namespace
{

constexpr qint64 MOST_PHOTO_MEMORY = 64LL * 1024 * 1024;
constexpr QRgb BLACK = 0xff000000;

/** Whether a picture of this size, whose sign says nothing, fits into memory that a photo may need.
 */
bool isAffordable(QSize size, QImage::Format format)
{
    // It becomes a picture of 32 bits a pixel, however it is stored.
    const int bits = std::max<int>(QImage::toPixelFormat(format).bitsPerPixel(), 32);
    const qint64 pixels = std::abs(qint64{size.width()}) * std::abs(qint64{size.height()});
    return pixels <= MOST_PHOTO_MEMORY * 8 / bits;
}

/** The size of what Qt's plug-in makes room for, as far as it can be known before. */
QSize neededSize(const QImageReader &reader, const QByteArray &format, const QByteArray &bytes)
{
    if (format != "gif")
        return reader.size();
    // Announced is the first of its pictures, which can be a small part of the canvas.
    constexpr int CANVAS_AT = 6;
    const auto *const canvas = bytes.constData() + CANVAS_AT;
    return reader.size().expandedTo(
        {qFromLittleEndian<quint16>(canvas), qFromLittleEndian<quint16>(canvas + sizeof(quint16))});
}

/** A picture that is there; a null one lacked memory, and the card without it would be taken for
 * whole. */
template <typename Picture>
Picture demanded(Picture picture)
{
    if (picture.isNull())
        qBadAlloc(); // throws
    return picture;
}

/**
 * What Qt's BMP reader makes of `bytes` on `canvas`, which must have the picture's size and format:
 * pixels that the file lacks stay as they are. Null when the file is broken.
 */
QImage readOnto(QImage canvas, QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "bmp");
    return reader.read(&canvas) ? canvas : QImage();
}

/** A picture that is filled with `pixel`. */
QImage filled(QSize size, QImage::Format format, uint pixel)
{
    QImage image = demanded(QImage(size, format));
    image.fill(pixel);
    return image;
}

/** A BMP with a palette that may have no black, so no canvas is black. */
QImage readIndexedBmp(const QByteArray &bytes, QSize size, QImage::Format format)
{
    // Read with unlike canvases, and unlike bytes behind the file: where this makes a difference,
    // the file lacks the pixel.
    const auto readWith = [&](uchar filler) {
        QImage canvas = filled(size, format, filler);
        const auto most = static_cast<int>(canvas.sizeInBytes()); // that the file can lack
        return readOnto(std::move(canvas), bytes + QByteArray(most, static_cast<char>(filler)));
    };
    const QImage one = readWith(0);
    const QImage other = readWith(0xff);
    if (one.isNull() || other.isNull())
        return {};
    QImage picture = demanded(one.convertToFormat(QImage::Format_RGB32));
    for (int y = 0; y < picture.height(); ++y) {
        auto *const row = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            if (one.pixelIndex(x, y) != other.pixelIndex(x, y))
                row[x] = BLACK;
    }
    return picture;
}

/** The BMP in `bytes`, black where the file lacks something, and not what the process had in that
 * memory before, be it of another card. */
QImage readBmp(const QByteArray &bytes, QSize announced, QImage::Format format)
{
    if (announced.width() <= 0 || announced.height() == 0)
        return {};
    // A height is negative where rows run from the top down.
    const QSize size(announced.width(), std::abs(announced.height()));
    return QImage::toPixelFormat(format).bitsPerPixel() == 32
               ? readOnto(filled(size, format, BLACK), bytes)
               : readIndexedBmp(bytes, size, format);
}

/** The picture in `bytes`, whose format is detected from them. */
QImage readPicture(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QByteArray format = reader.format(); // the first, before anything is read
    // Qt's JPEG plug-in leaves the pixels' format unset when it can read no header.
    const bool isAnnounced = reader.size() != QSize();
    const auto pixels = isAnnounced ? reader.imageFormat() : QImage::Format_Invalid;
    if (!isAffordable(neededSize(reader, format, bytes), pixels))
        return {};
    if (format == "bmp")
        return readBmp(bytes, reader.size(), pixels);
    const QImage image = reader.read();
    // A plug-in that announces no size, or another, shows it only now.
    return isAffordable(image.size(), image.format()) ? image : QImage();
}

QPixmap loadedPhoto(const unsigned char (&photo)[IDCARD_PHOTO_SIZE])
{
    if (const auto image = plainBmpImage(photo, sizeof(photo)))
        return demanded(QPixmap::fromImage(*image));
    const QImage image =
        readPicture(QByteArray::fromRawData(reinterpret_cast<const char *>(photo), sizeof(photo)));
    return image.isNull() ? QPixmap() : demanded(QPixmap::fromImage(image));
}

} // namespace

QPixmap fittedPhoto(const unsigned char (&photo)[IDCARD_PHOTO_SIZE], PhotoBackground background,
                    QSize box)
{
    QPixmap pixmap = loadedPhoto(photo);
    if (pixmap.isNull())
        return pixmap;
    if (background == PhotoBackground::TRANSPARENT)
        pixmap = Tools::convertHeadImgCNBgToTransparent(pixmap);
    const QPixmap fitted = pixmap.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return box.isEmpty() ? fitted : demanded(fitted);
}
