#pragma once

// The card on a simulated reader, and the faults in force. Every kind of simulated reader
// asks here; none of its answers depends on how the reader is reached.

#include <optional>

#include <QString>

#include "simulator/card/card_description.h"

namespace simulator
{

enum class PutAs {
    DESCRIBED,
    PLAIN, ///< without the faults of its description, a compressed photo delivered as a BMP file
};

/**
 * A card, put by a call or named by the environment, with its own faults and those set beside it.
 *
 * Counted faults count down over the life of the setting they came with, however often the reader
 * is opened in between: those of the card from the moment it is put, the others from the moment
 * they are set. When both count the same fault, the one set beside the card is used up first.
 */
class CardSlot
{
public:
    /** The slot of a reader on USB. */
    CardSlot() = default;
    /** What is set beside the card must be faults that the reader on this road has. */
    explicit CardSlot(Road road) : m_road(road) {}

    static constexpr const char *CARD_VARIABLE = "IDCARD_SIMULATOR_CARD";
    static constexpr const char *FAULTS_VARIABLE = "IDCARD_SIMULATOR_FAULTS";

    /** Puts a card; from now on the environment names none. On failure says why, changes nothing.
     */
    bool putCard(const QString &nameOrPath, PutAs as, QString *problem);

    /** Takes the card away; from now on the environment names none. */
    void takeCard();

    /** Sets the faults beside the card's own; from now on those of the environment do not count. */
    bool setFaults(const QString &faults, QString *problem);

    /**
     * Takes over what the environment says and no call has decided. To be asked whenever the reader
     * is opened; an unchanged environment leaves counts and a removed card as they are. On failure
     * says why and changes nothing.
     */
    bool followEnvironment(QString *problem);

    /** The card on the reader; nullptr when there is none. */
    [[nodiscard]] const CardDescription *card() const;

    /** A number that changes whenever a card is put or taken. */
    [[nodiscard]] unsigned int placement() const { return m_placement; }

    /** The faults in force: those of the card, replaced by those set beside it. */
    [[nodiscard]] Faults faults() const;

    /** One opening: whether the reader is there. Counts for open-fails-every. */
    bool findReader();

    /** One look for a card: whether it is seen. Uses up a count of no-card. */
    bool findCard();

    /** One read: whether it fails and may be tried again. Uses up a count of transient-failures. */
    bool failsTransiently();

    /** Makes the card go, until one is put again. */
    void removeCard() { m_removed = true; }

private:
    struct CountedFaults {
        Faults faults;
        int findsWithoutCard = 0;
        int transientFailures = 0;

        CountedFaults() = default;
        explicit CountedFaults(const Faults &set);
    };

    bool followCardVariable(QString *problem);
    bool followFaultsVariable(QString *problem);
    void place(const CardDescription &card);
    void clear();

    Road m_road = Road::USB;
    std::optional<CardDescription> m_card;
    unsigned int m_placement = 0;
    bool m_removed = false;
    int m_openings = 0; ///< since a reader was not there, or the faults changed
    CountedFaults m_cardFaults;
    CountedFaults m_setFaults;
    bool m_cardDecidedByCall = false;
    bool m_faultsDecidedByCall = false;
    QString m_cardVariable;   ///< value that was taken over last
    QString m_faultsVariable; ///< value that was taken over last
};

} // namespace simulator
