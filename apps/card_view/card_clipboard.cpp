#include "apps/card_view/card_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace viewer
{

namespace
{

/** By which clipboard managers know a secret, such as what a password manager copies. */
void markAsSecret(QMimeData *data)
{
    data->setData(QStringLiteral("x-kde-passwordManagerHint"), QByteArrayLiteral("secret"));
}

} // namespace

void copyText(const QString &text)
{
    auto *const data = new QMimeData;
    data->setText(text);
    markAsSecret(data);
    QGuiApplication::clipboard()->setMimeData(data);
}

QMimeData *pictureData(const QByteArray &file)
{
    auto *const data = new QMimeData;
    data->setImageData(QImage::fromData(file));
    data->setData(
        file.startsWith("BM") ? QStringLiteral("image/bmp") : QStringLiteral("image/jpeg"), file);
    markAsSecret(data);
    return data;
}

void copyPicture(const QByteArray &file)
{
    QGuiApplication::clipboard()->setMimeData(pictureData(file));
}

} // namespace viewer
