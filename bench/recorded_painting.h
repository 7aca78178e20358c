#pragma once

// What was painted on a card's two sides, in a file: one program records it, another paints it
// again without the library.

#include <vector>

#include <QDataStream>

#include "tests/render/painting_recorder.h"

struct RecordedSide {
    QString templateFile;
    std::vector<Painted> painted;
};

inline QDataStream &operator<<(QDataStream &stream, const Painted &painted)
{
    return stream << painted.isText << QByteArray::fromStdString(painted.text) << painted.point
                  << painted.font << painted.color << painted.pixmap << painted.canvas;
}

inline QDataStream &operator>>(QDataStream &stream, Painted &painted)
{
    QByteArray text;
    stream >> painted.isText >> text >> painted.point >> painted.font >> painted.color >>
        painted.pixmap >> painted.canvas;
    painted.text = text.toStdString();
    return stream;
}

inline QDataStream &operator<<(QDataStream &stream, const RecordedSide &side)
{
    stream << side.templateFile << static_cast<quint32>(side.painted.size());
    for (const Painted &painted : side.painted)
        stream << painted;
    return stream;
}

inline QDataStream &operator>>(QDataStream &stream, RecordedSide &side)
{
    quint32 count = 0;
    stream >> side.templateFile >> count;
    side.painted.resize(count);
    for (Painted &painted : side.painted)
        stream >> painted;
    return stream;
}
