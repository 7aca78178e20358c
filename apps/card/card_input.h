#pragma once

// A card from the JSON that idcard-reader prints with --inline all, for programs that let it read.

#include <optional>

#include <QJsonObject>

#include "apps/card/card.h"

namespace app
{

/**
 * The card that `toJson` wrote; nothing when the object is not one. A compressed photo is not in
 * the JSON: of it the card has the form alone.
 */
std::optional<Card> cardFromJson(const QJsonObject &object);

} // namespace app
