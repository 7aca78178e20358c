#include "viewer/card_desk.h"

#include <algorithm>
#include <utility>

#include <QCoreApplication>

#include "api/result_codes.h"
#include "apps/record_decoder.h"

namespace viewer
{

namespace
{

// A reading through the library holds the GUI thread, so that the window gets as much time as it.
constexpr qint64 SHORTEST_PAUSE_MS = 500;

} // namespace

CardDesk::CardDesk()
{
    m_nextLook.setSingleShot(true);
    connect(&m_nextLook, &QTimer::timeout, this, &CardDesk::start);
}

CardDesk::~CardDesk()
{
    if (m_usbRead)
        m_usbRead->wait();
    takeCard();
    m_simulator.unload();
}

void CardDesk::setRoad(const RoadChoice &choice)
{
    takeCard();
    m_choice = choice;
    m_presence = app::CardPresence();
    m_isRoadChanged = true;
    m_isAwaiting = false;
    const app::SimulatorProblem problem = prepareSimulator();
    if (problem)
        emit failed(messageOf(problem));
}

app::SimulatorProblem CardDesk::prepareSimulator()
{
    const bool isNeeded = m_choice.road == Road::Simulator ||
                          (m_choice.road == Road::Usb && m_choice.simulatorPhotos);
    // Its functions would go before the maker's as long as they are in the process.
    return isNeeded ? m_simulator.load() : m_simulator.unload();
}

bool CardDesk::putCard(const QString &card, const QString &faults)
{
    app::SimulatorProblem problem = prepareSimulator();
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
    const app::SimulatorProblem problem = prepareSimulator();
    if (problem) {
        finish({nullptr, problem.exitStatus, 0, messageOf(problem)});
    } else if (m_choice.road == Road::Usb) {
        m_usbRead.reset(QThread::create(
            [this, device = m_choice.device] { m_usbOutcome = app::readOverUsb(device); }));
        connect(m_usbRead.get(), &QThread::finished, this, &CardDesk::takeUsbOutcome);
        m_usbRead->start();
    } else {
        lookThroughLibrary();
    }
}

void CardDesk::lookThroughLibrary()
{
    app::ReadOutcome outcome = app::readCard();
    Look look{nullptr, outcome.exitStatus(), outcome.code, {}};
    if (outcome.card) {
        app::decodePhoto(&*outcome.card);
        look.card = std::make_shared<const app::Card>(std::move(*outcome.card));
    } else
        look.message = messageOf(outcome);
    // What the user pressed meanwhile was meant for this reading.
    QCoreApplication::processEvents();
    finish(look);
}

void CardDesk::takeUsbOutcome()
{
    m_usbRead->wait();
    m_usbRead.reset();
    const app::UsbOutcome outcome = std::exchange(m_usbOutcome, {});
    if (outcome.exitStatus() == app::ExitStatus::Done)
        finish(decoded(outcome));
    else
        finish({nullptr, outcome.exitStatus(), outcome.code, messageOf(outcome)});
}

CardDesk::Look CardDesk::decoded(const app::UsbOutcome &outcome)
{
    auto card = app::decodeRawRecord(outcome.record, outcome.prints, app::Road::Usb);
    if (!card)
        return {nullptr, app::ExitStatus::NothingRead, outcome.code, undecodableTextMessage()};
    Look look;
    if (card->photoFormat() == app::PhotoFormat::Compressed) {
        look.message = messageOf(*app::findResult(IDCARD_RESULT_PHOTO_NOT_DECODED, false));
        look.message.kind = Message::Kind::Warning;
    }
    look.card = std::make_shared<const app::Card>(std::move(*card));
    return look;
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

void CardDesk::report(const Look &look, app::Sighting sighting)
{
    const bool isAskedFor = m_isAskedFor;
    const bool wasAwaiting = m_isAwaiting;
    m_isAskedFor = false;
    m_isAwaiting = sighting == app::Sighting::Nothing && !isAskedFor;
    if (look.card && (isAskedFor || sighting == app::Sighting::NewCard))
        emit cardRead(look.card, look.message);
    else if (m_isAwaiting && !wasAwaiting)
        emit cardAwaited();
    else if (!look.card && (isAskedFor || sighting == app::Sighting::NewFailure))
        emit failed(look.message);
}

} // namespace viewer
