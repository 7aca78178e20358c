#include "apps/card_view/picture_view.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QPainter>
#include <QStandardPaths>
#include <QUrl>

#include "apps/card_view/card_clipboard.h"
#include "apps/card_view/private_file.h"

namespace viewer
{

namespace
{

constexpr int LEAST_HEIGHT = 96;
constexpr int CORNER = 8;
constexpr double FADED_OPACITY = 0.3;
// Of what is written and drawn where there is no picture.
constexpr double LINE_OPACITY = 0.35;
constexpr double TEXT_OPACITY = 0.6;
constexpr int DRAGGED_SIZE = 160;

QImage faded(const QImage &picture)
{
    return picture.convertToFormat(QImage::Format_Grayscale8);
}

/** Screen readers pass over what has no role, and over its name. */
QAccessibleInterface *graphicOf(const QString & /*className*/, QObject *object)
{
    auto *const view = qobject_cast<PictureView *>(object);
    return view == nullptr ? nullptr : new QAccessibleWidget(view, QAccessible::Graphic);
}

} // namespace

PictureView::PictureView(const QString &name, const QSizeF &millimetres, QWidget *parent)
    : QWidget(parent), m_shape(millimetres)
{
    QAccessible::installFactory(graphicOf);
    setAccessibleName(name);
    setMinimumSize(QSizeF(m_shape.scaled(1e4, LEAST_HEIGHT, Qt::KeepAspectRatio)).toSize());
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    describe();
}

void PictureView::setPicture(const QByteArray &file, const QString &reason)
{
    if (file != m_file)
        m_draggedFolder.reset();
    m_file = file;
    m_picture = QImage::fromData(file);
    m_reason = reason;
    describe();
}

void PictureView::setCovered(bool covered)
{
    m_isCovered = covered;
    describe();
}

void PictureView::setFaded(bool faded)
{
    m_isFaded = faded;
    describe();
}

void PictureView::setFixedPictureSize(const QSize &size)
{
    m_fixedSize = size;
    updateGeometry();
    update();
}

QByteArray PictureView::visibleFile() const
{
    return m_isCovered || m_isFaded || m_picture.isNull() ? QByteArray() : m_file;
}

QRect PictureView::pictureRect() const
{
    const QSize size = m_fixedSize.isValid()
                           ? m_fixedSize
                           : m_shape.scaled(this->size(), Qt::KeepAspectRatio).toSize();
    QRect place(QPoint(), size);
    place.moveCenter(rect().center());
    return place;
}

QSize PictureView::sizeHint() const
{
    return m_fixedSize.isValid() ? m_fixedSize : minimumSize();
}

void PictureView::describe()
{
    const bool isThere = !m_picture.isNull();
    const QString state = isThere && m_isCovered ? tr("Covered") : isThere ? QString() : m_reason;
    setAccessibleDescription(state);
    setToolTip(visibleFile().isNull() ? state : tr("Drag the picture to another program"));
    update();
}

void PictureView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect place = pictureRect();
    if (!m_picture.isNull() && !m_isCovered) {
        painter.setOpacity(m_isFaded ? FADED_OPACITY : 1.0);
        painter.drawImage(place, m_isFaded ? faded(m_picture) : m_picture);
        return;
    }
    const QColor ink = palette().color(QPalette::WindowText);
    const auto faint = [&ink](double opacity) {
        return QColor(ink.red(), ink.green(), ink.blue(), qRound(255 * opacity));
    };
    painter.setPen(QPen(faint(LINE_OPACITY), 1, Qt::DashLine));
    painter.setBrush(m_isCovered && !m_picture.isNull() ? palette().brush(QPalette::Mid)
                                                        : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), CORNER, CORNER);
    const QString text = accessibleDescription().isEmpty()
                             ? accessibleName()
                             : accessibleName() + QLatin1Char('\n') + accessibleDescription();
    painter.setPen(faint(m_isCovered && !m_picture.isNull() ? 1.0 : TEXT_OPACITY));
    painter.drawText(place.adjusted(CORNER, CORNER, -CORNER, -CORNER),
                     Qt::AlignCenter | Qt::TextWordWrap, text);
}

QString PictureView::draggedFile()
{
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    m_draggedFolder =
        std::make_unique<QTemporaryDir>(runtime + QLatin1String("/idcard-viewer-XXXXXX"));
    const QString path = m_draggedFolder->filePath(
        objectName() + (m_file.startsWith("BM") ? QLatin1String(".bmp") : QLatin1String(".jpg")));
    QString problem;
    return writePrivateFile(path, m_file, &problem) ? path : QString();
}

void PictureView::mousePressEvent(QMouseEvent *event)
{
    m_pressed = event->pos();
}

void PictureView::mouseMoveEvent(QMouseEvent *event)
{
    const bool isFar =
        (event->pos() - m_pressed).manhattanLength() >= QApplication::startDragDistance();
    const QByteArray file = visibleFile();
    if (!(event->buttons() & Qt::LeftButton) || !isFar || file.isNull())
        return;
    QMimeData *const content = pictureData(file);
    const QString path = draggedFile();
    if (!path.isEmpty())
        content->setUrls({QUrl::fromLocalFile(path)});
    auto *const drag = new QDrag(this);
    drag->setMimeData(content);
    drag->setPixmap(QPixmap::fromImage(m_picture.scaled(
        DRAGGED_SIZE, DRAGGED_SIZE, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    drag->exec(Qt::CopyAction);
}

} // namespace viewer
