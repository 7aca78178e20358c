#pragma once

// A card as text: JSON for programs, a table for people.

#include <optional>

#include <QDate>
#include <QJsonObject>

#include "apps/card/card.h"
#include "apps/card/card_files.h"
#include "apps/process/json_object.h"
#include "apps/terminal/colours.h"

namespace app
{

/**
 * The card as JSON, the same form for every road (docs/card.schema.json): texts without the blanks
 * that fill them up, null for what the road does not deliver. `folder` is where the card's files
 * are: it is put before their names, an empty one gives bare names. Nothing: the card was not
 * saved, and the names are null. The bytes of the files of `inlined` stand beside their names, in
 * base64; null for a file that this card does not have. Notes and age are those of the day `today`.
 */
JsonObject toJson(const Card &card, const std::optional<QString> &folder, InlineParts inlined = {},
                  const QDate &today = QDate::currentDate());

/** What `toJson` calls a road and the form of a photo. */
std::optional<Road> roadOf(const QString &key);
std::optional<PhotoFormat> photoFormatOf(const QString &key);

/** The parts in a comma list of "photo", "pictures", "fingerprints" and "all". */
std::optional<InlineParts> parseInlineParts(const QString &words);

/** A row of what a card says to people, in the language of the application's translators. */
struct CardRow {
    enum class Sort {
        PLAIN,
        PERSONAL, ///< name, number, birth or address, which a privacy switch covers
        PHOTO,    ///< in which form it is, for those who do not see it
    };

    Sort sort;
    QString label;
    QString content; ///< on one line, a date with hyphens; empty when a field says nothing
    QString whole;   ///< what the record says where the decoder has cut it off; else the content
};

/** The content as it is shown: "-" when a field says nothing. */
QString shownContent(const CardRow &row);

/** The kind of card, each field that its road delivers, the photo and the fingerprints. */
QVector<CardRow> cardRows(const Card &card);

/** The kind of card in the language of the application's translators. */
QString kindForPeople(const Card &card);

/** The first of its holder's names that the card has, not cut off; empty when it has none. */
QString holderName(const Card &card);

/** The document's number; empty when it has none. */
QString holderNumber(const Card &card);

/** Over several lines, ending with a line break. */
QByteArray indentedJson(const QJsonObject &object);

/** On one line, ending with a line break. */
QByteArray jsonLine(const QJsonObject &object);

/** The card as a table for people, with the notes of the day; `folder` as for `toJson`. */
QString toTable(const Card &card, const std::optional<QString> &folder,
                const QDate &today = QDate::currentDate(), Colours colours = Colours::NONE);

/** The pictures of the card's sides alone, as `toJson` has them, with the kind of card. */
JsonObject picturesToJson(const Card &card, const QString &folder);

/** The pictures of the card's sides alone as a table for people. */
QString picturesToTable(const Card &card, const QString &folder);

/**
 * Why a photo cannot be saved as a picture, in the language of the application's translators; empty
 * when it can.
 */
QString missingPhotoNote(const Card &card);

/** Why there is no picture of this side; empty when there is one or none could be expected. */
QString missingPictureNote(const Card &card, CardSide side);

} // namespace app
