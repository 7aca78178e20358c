#pragma once

// The files that a card is saved as. A further file is a further row of the table in
// `card_files.cpp`.

#include <vector>

#include "apps/card/card.h"
#include "apps/card/file_set.h"

namespace app
{

/** Which of a card's files are meant. */
enum class CardFiles {
    ALL,
    PICTURES, ///< only those of its sides
};

enum class FileGroup {
    DATA, ///< what the card holds
    PICTURES,
};

/** What of a card's files JSON can hold in itself. */
enum class InlinePart {
    PHOTO = 1,
    PICTURES = 2,
    FINGERPRINTS = 4,
};
Q_DECLARE_FLAGS(InlineParts, InlinePart)

struct CardFile {
    const char *name;
    FileGroup group;
    /** The part of the card's JSON that names this file under "file"; null when none does. */
    const char *jsonKey;
    InlineParts part; ///< of which the file is; none when JSON cannot hold it
    /** What the file holds; null bytes when this card has no such file. */
    QByteArray (*content)(const Card &card);
    /**
     * Why this card has no such file, empty when it could not be expected; null when nobody expects
     * one of every card.
     */
    QString (*missingNote)(const Card &card);
};

std::vector<CardFile> cardFiles(CardFiles which);

/** The names of all such files a card can have. */
QStringList cardFileNames(CardFiles which);

/** The files of this card; those it does not have are in the list with null content. */
QVector<NamedContent> contentsOf(const Card &card, CardFiles which);

/** Notes on each file that could be expected and that this card does not have. */
QStringList missingFileNotes(const Card &card, CardFiles which);

/**
 * Saves all files of the card in the next numbered folder of `parent`, whose path it puts into
 * `folder`. Returns what failed, and then that folder is not left behind, or an empty text.
 */
QString saveInNextFolder(const Card &card, const QString &parent, QString *folder);

/** As above, in a new folder that is named after the holder: his name and his number. */
QString saveInHoldersFolder(const Card &card, const QString &parent, QString *folder);

/** The holder's name and number as a file can be called; the kind of card when it has neither. */
QString holderFileName(const Card &card);

} // namespace app
