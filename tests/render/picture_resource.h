#pragma once

// A file of the test's own making in Qt's resource system, as long as the object lives.

#include <QByteArray>
#include <QString>

class PictureResource
{
public:
    /** Makes `content` the resource `path()`, whose folder and name begin with ":/". */
    explicit PictureResource(const QByteArray &content,
                             const QString &path = QStringLiteral(":/made.bmp"));
    ~PictureResource();
    PictureResource(const PictureResource &) = delete;
    PictureResource &operator=(const PictureResource &) = delete;

    const QString &path() const { return m_path; }

private:
    QString folder() const;

    QString m_path;
    QByteArray m_bundle;
};
