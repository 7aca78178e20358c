#pragma once

// The picture of a card that is laid out in pixels of its template.

#include <QPixmap>
#include <QSize>
#include <QString>

#include "render/card_photo.h"

/** A font. What is 0 is not set and stays as Qt's default font has it. */
struct TextStyle {
    QString (*family)();
    int pixelSize;
    double spacing; ///< pixels after every character
    int weight;     ///< on Qt's scale of 0 to 99
};

class CardCanvas
{
public:
    /** The template at a resource path. Without one, nothing is drawn and the picture is empty. */
    explicit CardCanvas(const QString &templatePath);

    /** Draws one line in black; (x, y) is the left end of its baseline. */
    void text(int x, int y, const TextStyle &style, const QString &text);

    /**
     * Draws lines of `wrapAfter` characters, one `lineStep` below the other, the first like a
     * single line.
     */
    void lines(int x, int y, const TextStyle &style, QString text, int wrapAfter, int lineStep);

    /** Paints a photo that is fitted into `box`; (x, y) is its top left corner. */
    void photo(int x, int y, QSize box, PhotoBackground background,
               const unsigned char (&photo)[IDCARD_PHOTO_SIZE]);

    /** The picture as base64 text of a JPEG file. */
    QString base64() const;

private:
    QPixmap m_pixmap;
};
