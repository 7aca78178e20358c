#include "tests/render/sample_photo.h"

#include <cstdio>
#include <cstring>

#include <QBuffer>
#include <QImage>

QByteArray samplePhoto()
{
    QImage image(102, 126, QImage::Format_RGB888);
    image.fill(Qt::white);
    for (int y = 20; y < 126; ++y)
        for (int x = 20; x < 82; ++x)
            image.setPixelColor(x, y, QColor(x * 2, y * 2, (x + y) % 256));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "BMP");
    if (bytes.size() != IDCARD_PHOTO_SIZE) {
        std::fprintf(stderr, "the sample photo has %d bytes\n", bytes.size());
        std::abort();
    }
    return bytes;
}

void putSamplePhoto(unsigned char (&photo)[IDCARD_PHOTO_SIZE])
{
    std::memcpy(photo, samplePhoto().constData(), sizeof(photo));
}
