#pragma once

// A picture in its true size, or what stands in its place.

#include <QPixmap>
#include <QWidget>

namespace viewer
{

/** Its accessible name says what the picture shows. */
class PictureView : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /** The picture's file, or null bytes; `reason` stands in the place of a missing picture. */
    void setPicture(const QByteArray &file, const QString &reason);

    /** Covered, nothing of a picture is painted. */
    void setCovered(bool covered);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void describe();

    QPixmap m_picture;
    QString m_reason;
    bool m_isCovered = false;
};

} // namespace viewer
