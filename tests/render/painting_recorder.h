#pragma once

// Records what is painted while it lives: every text and every pixmap that reaches QPainter, in
// order. The calls are painted all the same.

#include <string>
#include <vector>

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QSize>

struct Painted {
    bool isText = false;
    std::string text;
    QPointF point;
    QFont font;
    QColor color;
    QSize pixmap; ///< size of the pixmap that was painted
    QSize canvas; ///< size of what was painted on
};

class PaintingRecorder
{
public:
    PaintingRecorder();
    ~PaintingRecorder();
    PaintingRecorder(const PaintingRecorder &) = delete;
    PaintingRecorder &operator=(const PaintingRecorder &) = delete;

    const std::vector<Painted> &painted() const { return m_painted; }
    void add(const Painted &painted) { m_painted.push_back(painted); }

private:
    std::vector<Painted> m_painted;
};
