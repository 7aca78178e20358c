#pragma once

// A file of the test's own making in Qt's resource system, as long as the object lives.

#include <QByteArray>
#include <QString>

class PictureResource
{
public:
    /** Makes `content` the resource `path()`. */
    explicit PictureResource(const QByteArray &content);
    ~PictureResource();
    PictureResource(const PictureResource &) = delete;
    PictureResource &operator=(const PictureResource &) = delete;

    static QString path();

private:
    QByteArray m_bundle;
};
