#include "render/card_template.h"

#include <utility>

#include <QImage>
#include <QResource>

#include "render/plain_bmp.h"

QPixmap loadTemplate(const QString &path)
{
    const QResource resource(path);
    auto image = plainBmpImage(resource.data(), resource.size());
    // Given away: Qt copies the pixels of an image that it is only shown.
    return QPixmap::fromImage(image ? *std::move(image) : QImage(path));
}
