#pragma once

// The pictures of the empty cards, from the resource bundle that the library carries.

#include <QPixmap>
#include <QString>

/**
 * The template at a resource path, at its own size; a null pixmap when it cannot be loaded. Pixels
 * are those that Qt's own readers give.
 */
QPixmap loadTemplate(const QString &path);
