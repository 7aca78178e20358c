#pragma once

// What is copied of a card, marked so that clipboard managers do not keep it.

#include <QByteArray>
#include <QImage>
#include <QMimeData>
#include <QString>

namespace viewer
{

void copyText(const QString &text);

/** The picture for programs that take pictures, and its file as it is for those that take files. */
QMimeData *pictureData(const QByteArray &file);
void copyPicture(const QByteArray &file);

} // namespace viewer
