#include "apps/reading/reader_presence.h"

namespace app
{

QVector<ReaderChange> ReaderPresence::observe(const Look &look)
{
    const ReaderState before = m_reader;
    if (look.reader != ReaderState::UNKNOWN)
        m_reader = look.reader;
    if (look.reader == ReaderState::MISSING) {
        m_failure.reset();
        if (before == ReaderState::MISSING)
            return {};
        return {before == ReaderState::THERE ? ReaderChange::READER_REMOVED
                                             : ReaderChange::READER_MISSING};
    }
    QVector<ReaderChange> changes;
    if (m_reader != before)
        changes << ReaderChange::READER_ADDED;
    return changes + observeCard(look);
}

QVector<ReaderChange> ReaderPresence::takeCard()
{
    m_failure.reset();
    if (m_reader == ReaderState::MISSING)
        m_reader = ReaderState::UNKNOWN; // to be reported again
    return removeCard();
}

QVector<ReaderChange> ReaderPresence::observeCard(const Look &look)
{
    const bool gotNoDataBefore = std::exchange(m_gotNoData, look.gotNoData);
    if (look.gotNoData && !gotNoDataBefore)
        return {}; // a card that lies still gives none now and then; a second time it is another
    const auto failureBefore = std::exchange(m_failure, std::nullopt);
    if (look.foundNoCard())
        return removeCard();
    if (look.failure) {
        // The card may still lie there: a failure alone makes it no new one.
        m_failure.emplace(look.failure->exitStatus, look.failure->code.value_or(0));
        return m_failure == failureBefore ? QVector<ReaderChange>()
                                          : QVector<ReaderChange>{ReaderChange::READ_FAILED};
    }
    if (look.digest == m_card) {
        // Who was asked to lay it down once more may have done so between two looks.
        return failureBefore ? QVector<ReaderChange>{ReaderChange::CARD_READ}
                             : QVector<ReaderChange>();
    }
    const QVector<ReaderChange> changes = removeCard() << ReaderChange::CARD_READ;
    m_card = look.digest;
    return changes;
}

QVector<ReaderChange> ReaderPresence::removeCard()
{
    if (m_card.isEmpty())
        return {};
    m_card.clear();
    return {ReaderChange::CARD_REMOVED};
}

} // namespace app
