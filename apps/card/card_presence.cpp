#include "apps/card/card_presence.h"

namespace app
{

Sighting CardPresence::observe(const ReadOutcome &outcome)
{
    return observe(outcome.card ? &*outcome.card : nullptr, outcome.exitStatus(), outcome.code);
}

Sighting CardPresence::observe(const Card *card, ExitStatus status, int code)
{
    return observe(card != nullptr ? card->digest() : QByteArray(), status, code);
}

Sighting CardPresence::observe(const QByteArray &digest, ExitStatus status, int code)
{
    if (!digest.isEmpty()) {
        const bool isSame = digest == m_card;
        m_card = digest;
        m_failure.reset();
        return isSame ? Sighting::SAME_CARD : Sighting::NEW_CARD;
    }
    if (status == ExitStatus::NO_CARD) {
        m_card.clear();
        m_failure.reset();
        return Sighting::NOTHING;
    }
    // The card may still lie there: a failure alone makes it no new one.
    const std::pair failure(status, code);
    const bool isSame = m_failure == failure;
    m_failure = failure;
    return isSame ? Sighting::SAME_FAILURE : Sighting::NEW_FAILURE;
}

} // namespace app
