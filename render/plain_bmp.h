#pragma once

// Plain BMP files that lie uncompressed in memory, as the templates and the photos of cards do.
// Qt's reader takes them through a device, pixel by pixel, which costs half as much as painting a
// whole card; here they are copied row by row. And Qt's reader, when memory runs out inside it,
// keeps a lock for which the next one waits forever.

#include <optional>

#include <QImage>

/**
 * The picture in a BMP file of 24 or 32 bits a pixel with its rows from the bottom up, as Qt's own
 * reader gives it; nothing when `data` is anything else or not whole.
 */
std::optional<QImage> plainBmpImage(const uchar *data, qint64 size);
