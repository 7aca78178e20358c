#include "apps/card_presence.h"

namespace app
{

Sighting CardPresence::observe(const ReadOutcome &outcome)
{
    if (outcome.card) {
        const QByteArray card = outcome.card->digest();
        const bool isSame = card == m_card;
        m_card = card;
        m_failure.reset();
        return isSame ? Sighting::SameCard : Sighting::NewCard;
    }
    if (outcome.exitStatus() == ExitStatus::NoCard) {
        m_card.clear();
        m_failure.reset();
        return Sighting::Nothing;
    }
    // The card may still lie there: a failure alone makes it no new one.
    const bool isSame = m_failure == outcome.code;
    m_failure = outcome.code;
    return isSame ? Sighting::SameFailure : Sighting::NewFailure;
}

} // namespace app
