// Paints a card's sides onto paper in their true size, and keeps such a page as a PDF file.

#include "apps/card_view/card_sheet.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QRectF>

#include "apps/card_view/private_file.h"
#include "apps/card_view/true_size.h"

namespace app
{

namespace
{

// Millimetres.
constexpr QSizeF PAGE_SIZE(210.0, 297.0);
constexpr double GAP = 20.0;
constexpr double MM_PER_INCH = 25.4;

constexpr double NOTE_PIXELS_PER_MM = 10.0; // letters have whole pixels
constexpr double NOTE_GAP = 8.0;
constexpr double NOTE_HEIGHT = 4.0; // of its letters, with the space between lines

constexpr int PDF_RESOLUTION = 1200; // dots per inch; the pictures keep their own pixels

class Text
{
    Q_DECLARE_TR_FUNCTIONS(CardSheet)
};

/** The place of a side on the page; 0 is the upper one. */
QRectF placeOf(int side)
{
    const double left = (PAGE_SIZE.width() - CARD_SIZE_MM.width()) / 2;
    const double top = (PAGE_SIZE.height() - GAP) / 2 - CARD_SIZE_MM.height();
    return {QPointF(left, top + side * (CARD_SIZE_MM.height() + GAP)), CARD_SIZE_MM};
}

/** The decoded sides of a sheet; a side without a picture is a null image. */
struct Pictures {
    QImage front;
    QImage back;
};

/** False when a picture cannot be decoded, or when there is none. */
bool decode(const CardSheet &sheet, Pictures *pictures, QString *problem)
{
    if (sheet.front.isNull() && sheet.back.isNull()) {
        *problem = Text::tr("There is no picture of either side of the card. Read the card again.");
        return false;
    }
    const struct {
        const QByteArray &jpeg;
        QImage *picture;
        QString damage;
    } sides[] = {
        {sheet.front, &pictures->front,
         Text::tr("The picture of the card's front is damaged. Read the card again.")},
        {sheet.back, &pictures->back,
         Text::tr("The picture of the card's back is damaged. Read the card again.")},
    };
    for (const auto &side : sides) {
        if (side.jpeg.isNull())
            continue;
        *side.picture = QImage::fromData(side.jpeg, "JPG");
        if (side.picture->isNull()) {
            *problem = side.damage;
            return false;
        }
    }
    return true;
}

/** Below the sides, as wide as they are. */
void paintNote(const QString &note, QPainter *painter)
{
    const QRectF lowest = placeOf(1);
    QFont font = painter->font();
    font.setPixelSize(int(NOTE_HEIGHT * NOTE_PIXELS_PER_MM));
    painter->setFont(font);
    painter->translate(lowest.left(), lowest.bottom() + NOTE_GAP);
    painter->scale(1 / NOTE_PIXELS_PER_MM, 1 / NOTE_PIXELS_PER_MM);
    const QRectF place(0, 0, lowest.width() * NOTE_PIXELS_PER_MM, PAGE_SIZE.height());
    painter->drawText(place, Qt::AlignHCenter | Qt::TextWordWrap, note);
}

/** Paints the page onto a device whose origin is the corner of the paper. */
bool paintPage(const Pictures &pictures, const QString &note, QPaintDevice *device)
{
    QPainter painter;
    if (!painter.begin(device))
        return false;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(device->logicalDpiX() / MM_PER_INCH, device->logicalDpiY() / MM_PER_INCH);
    if (!pictures.front.isNull())
        painter.drawImage(placeOf(0), pictures.front);
    if (!pictures.back.isNull())
        painter.drawImage(placeOf(1), pictures.back);
    if (!note.isEmpty())
        paintNote(note, &painter);
    return painter.end();
}

} // namespace

bool paintSheet(const CardSheet &sheet, QPrinter *printer)
{
    Pictures pictures;
    QString problem;
    if (!decode(sheet, &pictures, &problem))
        return false;
    printer->setFullPage(true);
    if (!printer->setPageSize(QPageSize(QPageSize::A4)) ||
        !printer->setPageOrientation(QPageLayout::Portrait))
        return false;
    printer->setDocName(sheet.title);
    return paintPage(pictures, sheet.note, printer);
}

bool writeSheetPdf(const CardSheet &sheet, const QString &path, QString *problem)
{
    Pictures pictures;
    if (!decode(sheet, &pictures, problem))
        return false;

    QBuffer page;
    page.open(QIODevice::WriteOnly);
    QPdfWriter writer(&page);
    writer.setResolution(PDF_RESOLUTION);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF());
    writer.setTitle(sheet.title);
    if (!paintPage(pictures, sheet.note, &writer)) {
        *problem = Text::tr("The PDF page could not be made. Close other programs to free memory, "
                            "and try again.");
        return false;
    }

    return viewer::writePrivateFile(path, page.data(), problem);
}

} // namespace app
