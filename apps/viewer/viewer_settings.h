#pragma once

// What the window remembers from one run to the next: how it reads, what it does with a card, and
// how it looks. Nothing of a card is among it.

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include "apps/viewer/card_desk.h"

namespace viewer
{

/** What becomes of a card that is not the one on the reader any more. */
enum class PreviousCard {
    FADED,         ///< it is greyed, under the time at which it was read
    FADED_A_WHILE, ///< likewise, and gone after `forgetAfterSeconds`
    CLEARED,       ///< it is gone at once
};

constexpr int LONGEST_FORGETTING_S = 3600;

enum class FolderNames {
    NUMBERS, ///< 0001, 0002, ...
    HOLDERS, ///< the holder's name and number
};

struct ViewerSettings {
    app::RoadChoice reader;
    bool isAutomatic = false;
    bool hasSound = true;
    PreviousCard previousCard = PreviousCard::FADED_A_WHILE;
    int forgetAfterSeconds = 60;

    QString folder; ///< in which cards are saved; empty: not chosen yet
    FolderNames folderNames = FolderNames::NUMBERS;

    QString language; ///< empty: the user's; takes effect when the program starts
    bool isCovered = false;
    bool isOnTop = false;
    bool hasLargeType = false;
    bool isTrueSize = false;
    QByteArray geometry;
    QByteArray mainSplitter;
    QByteArray sideSplitter;
    QByteArray historyHeader;

    /** What an earlier run remembered; what it did not, or in words not known, is as above. */
    static ViewerSettings load();
    /** What has changed since, or is not in the user's file yet: another window may have changed
     * the rest meanwhile. */
    void store();

private:
    QVariantMap m_remembered; ///< as they are in the file, as far as is known
};

} // namespace viewer
