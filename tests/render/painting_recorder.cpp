#include "tests/render/painting_recorder.h"

#include <cstdlib>

#include <dlfcn.h>

#include <QPainter>
#include <QPixmap>

namespace
{

PaintingRecorder *current = nullptr;

QSize sizeOf(const QPaintDevice *device)
{
    return {device->width(), device->height()};
}

/** Qt's own definition of a function that this file defines in front of it. */
template <typename Function>
Function original(const char *mangledName)
{
    void *const symbol = dlsym(RTLD_NEXT, mangledName);
    if (symbol == nullptr)
        std::abort();
    return reinterpret_cast<Function>(symbol);
}

} // namespace

PaintingRecorder::PaintingRecorder()
{
    current = this;
}

PaintingRecorder::~PaintingRecorder()
{
    current = nullptr;
}

void QPainter::drawText(const QPointF &p, const QString &s)
{
    using Function = void (*)(QPainter *, const QPointF &, const QString &);
    static const auto paint = original<Function>("_ZN8QPainter8drawTextERK7QPointFRK7QString");
    if (current != nullptr) {
        Painted painted;
        painted.isText = true;
        painted.text = s.toStdString();
        painted.point = p;
        painted.font = font();
        painted.color = pen().color();
        painted.canvas = sizeOf(device());
        current->add(painted);
    }
    paint(this, p, s);
}

void QPainter::drawPixmap(const QPointF &p, const QPixmap &pm)
{
    using Function = void (*)(QPainter *, const QPointF &, const QPixmap &);
    static const auto paint = original<Function>("_ZN8QPainter10drawPixmapERK7QPointFRK7QPixmap");
    if (current != nullptr) {
        Painted painted;
        painted.point = p;
        painted.pixmap = pm.size();
        painted.canvas = sizeOf(device());
        current->add(painted);
    }
    paint(this, p, pm);
}
