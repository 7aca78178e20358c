#pragma once

// A picture of a card, as large as its place allows or in true size, which can be dragged into
// another program.

#include <memory>

#include <QByteArray>
#include <QImage>
#include <QPoint>
#include <QTemporaryDir>
#include <QWidget>

namespace viewer
{

class PictureView : public QWidget
{
    Q_OBJECT

public:
    /** `millimetres`: the size of the thing itself, whose shape an empty place has too. */
    PictureView(const QString &name, const QSizeF &millimetres, QWidget *parent = nullptr);

    /** Null bytes: there is no picture, and `reason` is shown in its place. */
    void setPicture(const QByteArray &file, const QString &reason);
    void setCovered(bool covered);
    /** Greyed and faint: it is not the card that lies on the reader. */
    void setFaded(bool faded);
    /** Not valid: as large as the place allows. */
    void setFixedPictureSize(const QSize &size);

    /** The file of the picture that is seen; null when none is. */
    QByteArray visibleFile() const;
    /** Where the picture, or what stands for it, is painted. */
    QRect pictureRect() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    void describe();
    /** The file that is dragged, in a folder of this user's running session. */
    QString draggedFile();

    QSizeF m_shape;
    QByteArray m_file;
    QImage m_picture;
    QString m_reason;
    QSize m_fixedSize;
    QPoint m_pressed;
    /** Another program may read the file later than it is dropped: it stays as long as the card. */
    std::unique_ptr<QTemporaryDir> m_draggedFolder;
    bool m_isCovered = false;
    bool m_isFaded = false;
};

} // namespace viewer
