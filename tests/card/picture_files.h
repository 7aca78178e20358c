#pragma once

// The pictures of a card's sides as the tool writes them.

#include <QString>

/**
 * Expects the file to be a JPEG picture that decodes completely, of the size that the pictures of
 * this kind of card have on Qt's offscreen platform, and readable by its owner only.
 */
void expectCardPicture(const QString &path, const QString &kind);
