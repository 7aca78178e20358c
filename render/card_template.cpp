#include "render/card_template.h"

#include <QImage>
#include <QResource>

#include "render/plain_bmp.h"

QPixmap loadTemplate(const QString &path)
{
    const QResource resource(path);
    const auto image = plainBmpImage(resource.data(), resource.size());
    return QPixmap::fromImage(image ? *image : QImage(path));
}
