#include "tests/render/sizeless_plugin.h"

#include <QIODevice>
#include <QImage>

namespace
{

constexpr const char *SIGNATURE = "sizeless ";

class SizelessHandler : public QImageIOHandler
{
public:
    bool canRead() const override { return true; }

    bool read(QImage *image) override
    {
        const QList<QByteArray> words = device()->readLine().split(' ');
        if (words.size() < 3)
            return false;
        *image = QImage(words.at(1).toInt(), words.at(2).toInt(), QImage::Format_RGB32);
        image->fill(Qt::red);
        return !image->isNull();
    }
};

} // namespace

QByteArray SizelessPlugin::fileOf(QSize size)
{
    return SIGNATURE + QByteArray::number(size.width()) + ' ' + QByteArray::number(size.height()) +
           " \n";
}

QImageIOPlugin::Capabilities SizelessPlugin::capabilities(QIODevice *device,
                                                          const QByteArray &format) const
{
    const bool isOurs = device != nullptr && device->peek(qstrlen(SIGNATURE)) == SIGNATURE;
    return isOurs || format == "sizeless" ? Capabilities(CanRead) : Capabilities();
}

QImageIOHandler *SizelessPlugin::create(QIODevice *device, const QByteArray &format) const
{
    auto *const handler = new SizelessHandler;
    handler->setDevice(device);
    handler->setFormat(format);
    return handler;
}
