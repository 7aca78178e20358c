#pragma once

// The files that a card is saved as. A further file is a further row of the table in
// `card_files.cpp`.

#include <vector>

#include "apps/card.h"
#include "apps/file_set.h"

namespace app
{

struct CardFile {
    const char *name;
    /** The part of the card's JSON that names this file under "file"; null when none does. */
    const char *jsonKey;
    /** What the file holds; null bytes when this card has no such file. */
    QByteArray (*content)(const Card &card);
};

const std::vector<CardFile> &cardFiles();

/** The names of all files a card can have. */
QStringList cardFileNames();

/** The files of this card; those it does not have are in the list with null content. */
QVector<NamedContent> contentsOf(const Card &card);

} // namespace app
