#include "render/card_template.h"

#include <QImage>

QPixmap loadTemplate(const QString &path)
{
    return QPixmap::fromImage(QImage(path));
}
