#pragma once

// readIDCard while memory runs out: one read with a chosen allocation failing, what became of it,
// and what a table of many such reads says.

#include <map>

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "tests/failure_injection/failing_memory.h"
#include "tests/library/reading.h"

namespace failure_injection
{

/** A card of the simulator, and how the record of its kind is looked at. */
struct Card {
    const char *name;
    /** What is wrong with a record that is to be a beginning of `whole`'s. */
    QStringList (*complaints)(const Reading &reading, const Reading &whole);
    /** Whether the photo is there, which is copied after the texts and before the pictures. */
    bool (*hasPhoto)(const Reading &reading, const Reading &whole);
};

/** One card of each kind. */
const std::vector<Card> &cardsOfEachKind();

/** What became of a read in which an allocation failed. */
struct ReadOutcome {
    int result = 1;
    bool hasPhoto = false; ///< and all texts, which come before it
    bool picturesAreWhole = false;
    bool hasFailed = false; ///< whether there was an allocation at the position at all
    QString failure;        ///< where, of a read that succeeds with other pictures
    int lostBlocks = 0;     ///< at a second read that failed in the same place
    QStringList lostBlockPlaces;
    QString crash;          ///< the innermost functions of a crash; empty: none
    QStringList complaints; ///< what must not be
};

/**
 * Reads the card in a child with the allocation at `position` failing, then reads it again with
 * memory. `whole` is what a read gives that lacks nothing.
 */
ReadOutcome readWithFailure(const Card &card, const Reading &whole, long position, Extent extent);

/** What reads of one card came to. */
struct ReadFigures {
    long allocations = 0;    ///< of a read that lacks nothing
    long beforePictures = 0; ///< of them
    int reads = 0;
    int refused = 0; ///< ended with a code
    int whole = 0;   ///< code 0 and everything as it should be
    /** Reads with code 0 and a picture that lacks something, by what failed. */
    std::map<QString, int> plainer;
    std::map<QString, int> crashes; ///< by function
    std::map<QString, int> hangs;   ///< of the read or of the next one, by function
    int losing = 0;                 ///< reads that lost memory
    std::map<QString, int> losses;  ///< blocks, by module
    QStringList complaints;
};

/** From one failing allocation to the next. */
struct Strides {
    int beforePictures;
    int painting;
};

/** Reads with one allocation after the other failing. */
ReadFigures sweepRead(const Card &card, Extent extent, const Strides &strides);

} // namespace failure_injection
