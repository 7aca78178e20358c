#include "apps/viewer/card_desk.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <QCoreApplication>

#include "api/result_codes.h"
#include "apps/card/record_decoder.h"

namespace app
{

namespace
{

// A reading through the library holds the GUI thread, so that the window gets as much time as it.
constexpr qint64 SHORTEST_PAUSE_MS = 500;
constexpr unsigned long FOREVER_MS = std::numeric_limits<unsigned long>::max();

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(Messages)
};

Message messageOf(const SimulatorProblem &problem)
{
    return {Texts::tr("The simulator cannot be used as it was asked to."),
            {problem.message},
            Message::Kind::FAILURE};
}

/** A record that came whole and could not be decoded. */
Message undecodableTextMessage()
{
    return {
        Texts::tr("The card's text could not be decoded."),
        {Texts::tr("Cause: %1")
             .arg(Texts::tr(
                 "The sex code of a foreigner's card must be 0, 1, 2 or 9, and this one is not.")),
         Texts::tr("What to do: %1").arg(Texts::tr("Read the card once more."))},
        Message::Kind::FAILURE};
}

Message readMessage()
{
    return {messageOf(*findResult(IDCARD_RESULT_OK, true)).headline};
}

/** A card was read, and its photo is no picture. */
Message missingPhotoMessage()
{
    Message message = messageOf(*findResult(IDCARD_RESULT_PHOTO_NOT_DECODED, false));
    message.kind = Message::Kind::WARNING;
    return message;
}

} // namespace

CardDesk::CardDesk()
{
    m_nextLook.setSingleShot(true);
    connect(&m_nextLook, &QTimer::timeout, this, &CardDesk::start);
}

CardDesk::~CardDesk()
{
    if (m_usbRead)
        m_usbRead->wait(FOREVER_MS);
    takeCard();
    m_simulator.unload();
}

void CardDesk::setRoad(const RoadChoice &choice)
{
    takeCard();
    m_choice = choice;
    m_presence = CardPresence();
    m_isRoadChanged = true;
    m_isAwaiting = false;
    const SimulatorProblem problem = prepareSimulator();
    if (problem)
        emit failed(messageOf(problem));
}

SimulatorProblem CardDesk::prepareSimulator()
{
    const bool isNeeded = m_choice.road == ReaderRoad::SIMULATOR ||
                          (m_choice.road == ReaderRoad::USB && m_choice.simulatorPhotos);
    // Its functions would go before the maker's as long as they are in the process.
    return isNeeded ? m_simulator.load() : m_simulator.unload();
}

bool CardDesk::putCard(const QString &card, const QString &faults)
{
    SimulatorProblem problem = prepareSimulator();
    if (!problem)
        problem = m_simulator.setFaults(faults);
    if (!problem)
        problem = m_simulator.putCard(card);
    if (problem)
        emit failed(messageOf(problem));
    return !problem;
}

void CardDesk::takeCard()
{
    if (m_simulator.isLoaded())
        m_simulator.takeCard();
}

void CardDesk::read()
{
    m_isAskedFor = true;
    start();
}

void CardDesk::setAutomatic(bool automatic)
{
    m_isAutomatic = automatic;
    m_isAwaiting = false;
    if (automatic)
        start();
    else
        m_nextLook.stop();
}

bool CardDesk::endsWithin(int milliseconds)
{
    return !m_usbRead || m_usbRead->wait(static_cast<unsigned long>(milliseconds));
}

void CardDesk::start()
{
    if (m_isReading)
        return;
    m_isReading = true;
    m_isRoadChanged = false;
    m_nextLook.stop();
    m_lookTime.start();
    if (m_isAskedFor)
        emit readingStarted();
    const SimulatorProblem problem = prepareSimulator();
    if (problem) {
        finish({nullptr, problem.exitStatus, 0, messageOf(problem)});
    } else if (m_choice.road == ReaderRoad::USB) {
        m_usbRead.reset(QThread::create(
            [this, device = m_choice.device] { m_usbOutcome = readOverUsb(device); }));
        connect(m_usbRead.get(), &QThread::finished, this, &CardDesk::takeUsbOutcome);
        m_usbRead->start();
    } else {
        lookThroughLibrary();
    }
}

void CardDesk::lookThroughLibrary()
{
    ReadOutcome outcome = readCard();
    Look look{nullptr, outcome.exitStatus(), outcome.code, readMessage()};
    if (outcome.card) {
        decodePhoto(&*outcome.card);
        look.card = std::make_shared<const Card>(std::move(*outcome.card));
    } else {
        look.message = messageOf(outcome);
    }
    // What the user pressed meanwhile was meant for this reading.
    QCoreApplication::processEvents();
    finish(look);
}

void CardDesk::takeUsbOutcome()
{
    m_usbRead->wait(FOREVER_MS);
    m_usbRead.reset();
    const UsbOutcome outcome = std::exchange(m_usbOutcome, {});
    if (outcome.exitStatus() == ExitStatus::DONE)
        finish(decoded(outcome));
    else
        finish({nullptr, outcome.exitStatus(), outcome.code, messageOf(outcome)});
}

CardDesk::Look CardDesk::decoded(const UsbOutcome &outcome)
{
    auto card = decodeRawRecord(outcome.record, outcome.prints, Road::USB);
    if (!card)
        return {nullptr, ExitStatus::NOTHING_READ, outcome.code, undecodableTextMessage()};
    const bool isPhotoMissing = card->photoFormat() == PhotoFormat::COMPRESSED;
    return {std::make_shared<const Card>(std::move(*card)), ExitStatus::DONE, outcome.code,
            isPhotoMissing ? missingPhotoMessage() : readMessage()};
}

void CardDesk::finish(const Look &look)
{
    m_isReading = false;
    const bool isDropped = m_isRoadChanged;
    if (!isDropped)
        report(look, m_presence.observe(look.card.get(), look.status, look.code));
    if (isDropped && m_isAskedFor)
        m_nextLook.start(0); // by the road that is chosen now
    else if (m_isAutomatic)
        m_nextLook.start(static_cast<int>(std::max(SHORTEST_PAUSE_MS, m_lookTime.elapsed())));
}

void CardDesk::report(const Look &look, Sighting sighting)
{
    const bool isAskedFor = m_isAskedFor;
    const bool wasAwaiting = m_isAwaiting;
    m_isAskedFor = false;
    m_isAwaiting = sighting == Sighting::NOTHING && !isAskedFor;
    if (look.card && (isAskedFor || sighting == Sighting::NEW_CARD))
        emit cardRead(look.card, look.message);
    else if (m_isAwaiting && !wasAwaiting)
        emit cardAwaited();
    else if (!look.card && (isAskedFor || sighting == Sighting::NEW_FAILURE))
        emit failed(look.message);
}

} // namespace app
