#pragma once

#include <string>

#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QPointF>
#include <QString>
#include <QStringList>

#include "common/export.h"

/**
 * What the card pictures are made with: units, text, sub-pictures, line wrapping and encoding.
 *
 * All operations are static and keep no state. Those that paint or ask the screen need a running Qt
 * GUI application with a screen and belong into its GUI thread. None reports an error: text on a
 * null pixmap draws nothing, and a family that is not installed is replaced by Qt's font matching.
 *
 * Two kinds of text call: `drawStringInPixmap` takes pixels of the pixmap and a font size in
 * pixels; the others take millimetres on the card and a font size in points, which becomes a pixel
 * size by truncation. The y coordinate that reaches Qt is always the baseline.
 */
class IDCARD_READER_EXPORT Tools
{
public:
    Tools();

    /**
     * Pixels per millimetre on the primary screen: its physical dots per inch, horizontally, by
     * 25.4. Asks the screen at every call, and sets `Qt::AA_EnableHighDpiScaling` before, which
     * stays on for the process.
     */
    static double getmm2Pixel();

    /** Height in pixels that a font of `pt` points has on the screen, not rounded. */
    static double getPixelHeightFromPoint(int pt);

    /** Draws `text` with `font`, its baseline beginning at `pos` (pixels). Returns true. */
    static bool drawStringInPixmap(QPixmap &pix, QString text, QColor color, QFont font,
                                   QPointF pos);

    /** The same with a font of `family` and `pixelSize`, at (x, y) pixels. Returns true. */
    static bool drawStringInPixmap(QPixmap &pix, QString text, QColor color, QString family,
                                   int pixelSize, int x, int y);

    /** Draws a line of text whose top left corner is at (xmm, ymm). Returns true. */
    static bool drawStringInPixmapFromTop(QPixmap &pix, QString text, QColor color, QString family,
                                          int pt, double xmm, double ymm);

    /** The same, moved down by `dy` pixels: a further line of a wrapped block. Returns true. */
    static bool drawStringInPixmapFromTop(QPixmap &pix, QString text, QColor color, QString family,
                                          int pt, double xmm, double ymm, double dy);

    /** Draws a line of text whose baseline begins at (xmm, ymm). Returns true. */
    static bool drawStringInPixmapFromBottom(QPixmap &pix, QString text, QColor color,
                                             QString family, int pt, double xmm, double ymm);

    /**
     * Draws a line of text whose baseline ends at (xmm, ymm), by the width that
     * `getTextPixelWidth` returns. Returns true.
     */
    static bool drawStringInPixmapFromBottomRight(QPixmap &pix, QString text, QColor color,
                                                  QString family, int pt, double xmm, double ymm);

    /**
     * Draws a number like that of an identity card: half bold, 0.48 pixels after every character,
     * its baseline beginning at (xmm, ymm). Returns true.
     */
    static bool drawIDCodeStringInPixmapFromBottom(QPixmap &pix, QString text, QColor color,
                                                   QString family, int pt, double xmm, double ymm);

    /**
     * How far a right-aligned text is moved to the left, in pixels: half the width of its bounding
     * rectangle plus 9. Not the width of the text: the pictures' layout rests on this formula.
     */
    static double getTextPixelWidth(QString family, int pt, QString text);

    /**
     * Paints `src` unscaled with its top left corner at (x, y) pixels. Always returns false, unlike
     * the text calls; the value says nothing.
     */
    static bool drawSubPixmap(QPixmap &dst, QPixmap &src, double x, double y);

    /** The same at (xmm, ymm) millimetres. */
    static bool drawSubPixmapEx(QPixmap &dst, QPixmap &src, double xmm, double ymm);

    /**
     * A copy of `photo` whose background is transparent: every pixel that is exactly opaque white,
     * (255, 255, 255) or (254, 254, 254). Near white stays.
     */
    static QPixmap convertHeadImgCNBgToTransparent(const QPixmap &photo);

    /**
     * Base64 text (RFC 4648, padded, no line breaks) of `pix` as a JPEG file of the writer's
     * default quality. Empty when it cannot be saved as one: for a null pixmap, for more than 65500
     * pixels on a side, and where Qt's JPEG plug-in is missing or cannot be loaded, for instance
     * because the process has no free file descriptor. Throws `std::bad_alloc` when there is no
     * memory for it.
     */
    static QString convertPixmapToBase64ViaJpg(const QPixmap &pix);

    /**
     * Cuts `text` into pieces of `n` UTF-16 units; the last is what remains, which may be empty. A
     * text of at most `n` gives one piece, and so does an `n` that is not positive.
     */
    static QStringList autoWrap(QString &text, int n);

    /**
     * Cuts an address into lines of at most 11 units, ideographs counting 1 and all else 0.5. A
     * line ends at 10.5 units already, as an ideograph would not fit; at the very end of the text
     * that is left out on the first line only. A text whose last line is full is followed by an
     * empty line.
     */
    static QStringList autoWrapEx(QString &text);

    /**
     * The paragraphs of a rich text as plain text, one element each, when it is laid out with a
     * font of `family` and `pixelSize`. `width` is not used.
     */
    static QStringList autoWrap(QString &html, QString family, int pixelSize, int width);

    /**
     * The Chinese name of the country whose alpha-3 code is `code`, from `COUNTRY_CODE_LIST`; an
     * empty text when no row has exactly this code (same length, same case, nothing trimmed).
     * May be called from any thread.
     */
    static std::string convertNationCodeToName(std::string code);
};
