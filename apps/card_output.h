#pragma once

// A card as text: JSON for programs, a table for people.

#include <optional>

#include <QJsonObject>

#include "apps/card.h"

namespace app
{

/**
 * The card as JSON; every text as the record holds it. `folder` is where the card's files stand: it
 * is put before their names, an empty one gives bare names. Nothing: the card was not saved, and
 * the names are null.
 */
QJsonObject toJson(const Card &card, const std::optional<QString> &folder);

/** Over several lines, ending with a line break. */
QByteArray indentedJson(const QJsonObject &object);

/** On one line, ending with a line break. */
QByteArray jsonLine(const QJsonObject &object);

/** The card as a table for people; `folder` as for `toJson`. */
QString toTable(const Card &card, const std::optional<QString> &folder);

/** What to tell about a photo that cannot be saved as a picture; empty when it can. */
QString missingPhotoNote(const Card &card);

} // namespace app
