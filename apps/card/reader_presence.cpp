#include "apps/card/reader_presence.h"

namespace app
{

QVector<ReaderChange> ReaderPresence::observe(const Look &look)
{
    const ExitStatus status = look.failure ? look.failure->exitStatus : ExitStatus::DONE;
    const int code = look.failure ? look.failure->code.value_or(0) : 0;
    const Sighting sighting = m_card.observe(look.digest, status, code);
    const ReaderState before = m_reader;
    if (look.reader != ReaderState::UNKNOWN)
        m_reader = look.reader;
    if (look.reader == ReaderState::MISSING) {
        if (before == ReaderState::MISSING)
            return {};
        return {before == ReaderState::THERE ? ReaderChange::READER_REMOVED
                                             : ReaderChange::READER_MISSING};
    }

    QVector<ReaderChange> changes;
    if (m_reader != before)
        changes << ReaderChange::READER_ADDED;
    switch (sighting) {
    case Sighting::NOTHING:
        changes << removedCard();
        break;
    case Sighting::NEW_CARD:
        changes << removedCard() << ReaderChange::CARD_READ;
        m_hasCard = true;
        break;
    case Sighting::NEW_FAILURE:
        changes << ReaderChange::READ_FAILED;
        break;
    case Sighting::SAME_CARD:
    case Sighting::SAME_FAILURE:
        break;
    }
    return changes;
}

QVector<ReaderChange> ReaderPresence::takeCard()
{
    m_card = CardPresence();
    if (m_reader == ReaderState::MISSING)
        m_reader = ReaderState::UNKNOWN; // to be reported again
    return removedCard();
}

QVector<ReaderChange> ReaderPresence::removedCard()
{
    if (!m_hasCard)
        return {};
    m_hasCard = false;
    return {ReaderChange::CARD_REMOVED};
}

} // namespace app
