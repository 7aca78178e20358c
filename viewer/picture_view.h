#pragma once

// A picture in its true size, or what stands in its place.

#include <QPixmap>
#include <QSizeF>
#include <QWidget>

#include "apps/true_size.h"

namespace viewer
{

class PictureView : public QWidget
{
    Q_OBJECT

public:
    /** `name` says what the picture shows, `size` how large it is in millimetres. */
    PictureView(const QString &name, QSizeF size);

    /** The picture's file, or null bytes; `reason` stands in the place of a missing picture. */
    void setPicture(const QByteArray &file, const QString &reason);

    /** Covered, nothing of a picture is painted. */
    void setCovered(bool covered);

    void setScale(const app::ScreenScale &scale);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void describe();

    QString m_name;
    QSizeF m_size;
    QPixmap m_picture;
    QString m_reason;
    bool m_isCovered = false;
};

} // namespace viewer
