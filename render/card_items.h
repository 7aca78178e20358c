#pragma once

// The items of a card picture that is laid out in pixels of its template, and the code that walks a
// table of them. What differs between kinds is what stands in their rows.

#include <cstddef>
#include <string>
#include <variant>

#include <QPixmap>
#include <QPointF>
#include <QSize>
#include <QString>

#include "render/card_photo.h"
#include "render/card_texts.h"

/** The two families that all pictures name. */
enum class Family { BODY, NUMBER };

QString familyName(Family family);

/** A font. What is 0 is not set and stays as Qt's default font has it. */
struct TextStyle {
    Family family;
    int pixelSize;
    double spacing; ///< pixels after every character
    int weight;     ///< on Qt's scale of 0 to 99
};

/** Weight of the numbers, between normal (50) and bold (75). */
constexpr int NUMBER_WEIGHT = 63;

/** A text; (x, y) is the left end of its first line's baseline. */
template <typename Record>
struct TextItem {
    QString (*text)(const Record &record);
    int x;
    int y;
    TextStyle style;
    int wrapAfter; ///< characters in a line; 0: one line, however long
    int lineStep;  ///< from one baseline to the next
};

/** Month or day of birth, further right where one digit stands in the place of two. */
template <typename Record>
struct DatePartItem {
    std::string Record::*part;
    int x;
    int xWithoutZero;
    int y;
    TextStyle style;
};

/** The holder's photo; (x, y) is its top left corner. */
struct PhotoItem {
    int x;
    int y;
    QSize box; ///< the photo is fitted into it
    PhotoBackground background;
};

template <typename Record>
using CardItem = std::variant<TextItem<Record>, DatePartItem<Record>, PhotoItem>;

/** Draws one line in black. */
void drawLine(QPixmap &canvas, const QString &text, const TextStyle &style, int x, int y);

/** Draws `text` in lines of `wrapAfter` characters, the first at (x, y). */
void drawLines(QPixmap &canvas, QString text, const TextStyle &style, int x, int y, int wrapAfter,
               int lineStep);

/** Paints `photo`, fitted as the item says. */
void drawPhoto(QPixmap &canvas, const unsigned char (&photo)[IDCARD_PHOTO_SIZE],
               const PhotoItem &item);

template <typename Record>
void drawItem(QPixmap &canvas, const Record &record, const TextItem<Record> &item)
{
    const QString text = item.text(record);
    if (item.wrapAfter > 0)
        drawLines(canvas, text, item.style, item.x, item.y, item.wrapAfter, item.lineStep);
    else
        drawLine(canvas, text, item.style, item.x, item.y);
}

template <typename Record>
void drawItem(QPixmap &canvas, const Record &record, const DatePartItem<Record> &item)
{
    const card_texts::DatePart part = card_texts::datePart(record.*item.part);
    drawLine(canvas, part.text, item.style, part.zeroRemoved ? item.xWithoutZero : item.x, item.y);
}

template <typename Record>
void drawItem(QPixmap &canvas, const Record &record, const PhotoItem &item)
{
    drawPhoto(canvas, record.byPhoto, item);
}

/** Draws every item of a table, in its order. */
template <typename Record, std::size_t count>
void drawItems(QPixmap &canvas, const Record &record, const CardItem<Record> (&items)[count])
{
    for (const CardItem<Record> &item : items)
        std::visit([&](const auto &it) { drawItem(canvas, record, it); }, item);
}
