#pragma once

// Where card descriptions come from: the built-in ones, compiled in, and files.

#include <optional>

#include <QString>
#include <QStringList>

#include "simulator/card/card_description.h"
#include "simulator/card/description_reader.h"

namespace simulator
{

/** Names of the built-in cards, in alphabetical order. */
QStringList builtInCardNames();

/**
 * The card of that built-in name, or described by the file of that path. A name without "/" that is
 * a built-in card's means that card, even when there is such a file.
 */
std::optional<CardDescription> loadCard(const QString &nameOrPath, DescriptionError *error);

} // namespace simulator
