#pragma once

// The sheet that a counter keeps of a card: both sides in their true size on one page, as a
// photocopy has them, on a printer or in a PDF file.

#include <QByteArray>
#include <QString>

class QPrinter;

namespace app
{

/** The two sides of one card as they go onto paper. */
struct CardSheet {
    QByteArray front;  ///< JPEG; null bytes: this side has no picture
    QByteArray back;   ///< JPEG; null bytes: this side has no picture
    QString title;     ///< of the document; print queues and PDF viewers show it
    QString note = {}; ///< is printed below the sides, such as why they have no portrait
};

/**
 * Paints one A4 page, upright, on which each side is 85.6 x 54 mm at any resolution, the front
 * above the back. A side without a picture leaves its place empty. The printer's paper and
 * orientation are set to that page. False, and nothing is printed, when the printer has no such
 * paper or cannot be started, when a picture cannot be decoded, or when there is none.
 */
bool paintSheet(const CardSheet &sheet, QPrinter *printer);

/**
 * Writes that page to a PDF file that only its owner can read. An existing file is replaced whole
 * or left as it was. On failure `*problem` says what failed and what to do.
 */
bool writeSheetPdf(const CardSheet &sheet, const QString &path, QString *problem);

} // namespace app
