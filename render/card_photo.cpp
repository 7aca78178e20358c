#include "render/card_photo.h"

#include <algorithm>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>

#include "render/plain_bmp.h"
#include "render/tools.h"

namespace
{

constexpr qint64 MOST_PHOTO_MEMORY = 64LL * 1024 * 1024;

/** Whether the picture that `reader` announces fits into memory that a photo may need. */
bool isAffordable(const QImageReader &reader)
{
    const QSize size = reader.size();
    if (size.isEmpty())
        return false;
    // It becomes a picture of 32 bits a pixel, whatever it is stored as.
    const int bits = std::max<int>(QImage::toPixelFormat(reader.imageFormat()).bitsPerPixel(), 32);
    return size.width() <= MOST_PHOTO_MEMORY * 8 / bits / size.height();
}

/** A picture that is there; a null one lacked memory, and the card without it would be taken for
 * whole. */
QPixmap demanded(const QPixmap &pixmap)
{
    if (pixmap.isNull())
        qBadAlloc(); // throws
    return pixmap;
}

/** A reader's photo as a picture: the format is told by the bytes themselves. */
QPixmap loadedPhoto(const unsigned char (&photo)[IDCARD_PHOTO_SIZE])
{
    if (const auto image = plainBmpImage(photo, sizeof(photo)))
        return demanded(QPixmap::fromImage(*image));
    QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(photo), sizeof(photo));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    if (!isAffordable(reader))
        return {};
    // Qt's BMP reader leaves the rows that a file lacks as they are: black, and not what the
    // process had in that memory before, be it of another card.
    QImage image(reader.size(), reader.imageFormat());
    image.fill(0);
    return reader.read(&image) ? QPixmap::fromImage(image) : QPixmap();
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
