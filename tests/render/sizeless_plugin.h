#pragma once

// A plug-in for an encoding of the tests' own, of those that announce no size before they are read.

#include <QByteArray>
#include <QImageIOHandler>
#include <QImageIOPlugin>
#include <QSize>

class SizelessPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "sizeless_plugin.json")

public:
    /** A red picture in that encoding. */
    static QByteArray fileOf(QSize size);

    Capabilities capabilities(QIODevice *device, const QByteArray &format) const override;
    QImageIOHandler *create(QIODevice *device, const QByteArray &format) const override;
};
