// The card on the reader, its faults and their counts.

#include "simulator/reader/card_slot.h"

#include "common/texts.h"
#include "simulator/card/card_library.h"
#include "simulator/translated_texts.h"

namespace simulator
{

namespace
{

SIMULATOR_TEXTS(Descriptions)

// Takes one from a count that may be endless; false when nothing is left of it.
bool useUp(int *count)
{
    if (*count <= 0)
        return false;
    if (*count != EVERY_TIME)
        --*count;
    return true;
}

QString variableProblem(const char *variable, const QString &problem)
{
    return filledIn(tr("environment variable %1: %2"), QLatin1String(variable), problem);
}

} // namespace

CardSlot::CountedFaults::CountedFaults(const Faults &set)
    : faults(set), findsWithoutCard(set.number(FaultKind::NO_CARD).value_or(0)),
      transientFailures(set.number(FaultKind::TRANSIENT_FAILURES).value_or(0))
{
}

bool CardSlot::putCard(const QString &nameOrPath, PutAs as, QString *problem)
{
    DescriptionError error;
    std::optional<CardDescription> card = loadCard(nameOrPath, &error);
    if (!card) {
        *problem = error.message();
        return false;
    }
    if (as == PutAs::PLAIN) {
        card->faults = {};
        if (card->photoDelivery == PhotoDelivery::COMPRESSED)
            card->photoDelivery = PhotoDelivery::BMP_FILE;
    }
    place(*card);
    m_cardDecidedByCall = true;
    return true;
}

void CardSlot::takeCard()
{
    clear();
    m_cardDecidedByCall = true;
}

bool CardSlot::setFaults(const QString &faults, QString *problem)
{
    const std::optional<Faults> parsed = parseFaults(faults, m_road, problem);
    if (!parsed)
        return false;
    m_setFaults = CountedFaults(*parsed);
    m_openings = 0;
    m_faultsDecidedByCall = true;
    return true;
}

bool CardSlot::followEnvironment(QString *problem)
{
    return (m_cardDecidedByCall || followCardVariable(problem)) &&
           (m_faultsDecidedByCall || followFaultsVariable(problem));
}

bool CardSlot::followCardVariable(QString *problem)
{
    const QString value = qEnvironmentVariable(CARD_VARIABLE);
    if (value == m_cardVariable)
        return true;
    if (value.isEmpty()) {
        clear();
    } else {
        DescriptionError error;
        const std::optional<CardDescription> card = loadCard(value, &error);
        if (!card) {
            *problem = variableProblem(CARD_VARIABLE, error.message());
            return false;
        }
        place(*card);
    }
    m_cardVariable = value;
    return true;
}

bool CardSlot::followFaultsVariable(QString *problem)
{
    const QString value = qEnvironmentVariable(FAULTS_VARIABLE);
    if (value == m_faultsVariable)
        return true;
    QString reason;
    const std::optional<Faults> parsed = parseFaults(value, m_road, &reason);
    if (!parsed) {
        *problem = variableProblem(FAULTS_VARIABLE, reason);
        return false;
    }
    m_setFaults = CountedFaults(*parsed);
    m_openings = 0;
    m_faultsVariable = value;
    return true;
}

void CardSlot::place(const CardDescription &card)
{
    m_card = card;
    ++m_placement;
    m_removed = false;
    m_openings = 0;
    m_cardFaults = CountedFaults(card.faults);
}

void CardSlot::clear()
{
    m_card.reset();
    ++m_placement;
    m_removed = false;
    m_cardFaults = {};
}

const CardDescription *CardSlot::card() const
{
    return m_card && !m_removed ? &*m_card : nullptr;
}

Faults CardSlot::faults() const
{
    Faults faults = m_setFaults.faults;
    faults.add(m_cardFaults.faults);
    return faults;
}

bool CardSlot::findReader()
{
    const std::optional<int> every = faults().number(FaultKind::OPEN_FAILS_EVERY);
    if (!every)
        return true;
    m_openings = (m_openings + 1) % *every;
    return m_openings != 0;
}

bool CardSlot::findCard()
{
    return card() != nullptr && !useUp(&m_setFaults.findsWithoutCard) &&
           !useUp(&m_cardFaults.findsWithoutCard);
}

bool CardSlot::failsTransiently()
{
    return useUp(&m_setFaults.transientFailures) || useUp(&m_cardFaults.transientFailures);
}

} // namespace simulator
