#include "apps/viewer/card_desk.h"

#include <utility>

#include <QJsonDocument>

#include "apps/card/card_input.h"
#include "common/texts.h"

namespace app
{

namespace
{

constexpr int PAUSE_AFTER_FAILED_WATCH_MS = 2000;
// A card that still lies on the reader is read again by the first look of a watch.
constexpr int TIME_OF_FIRST_LOOK_MS = 3000;

Problem problemIn(const QJsonObject &error)
{
    const auto text = [&](const char *key) { return error[QLatin1String(key)].toString(); };
    QString name = text("name");
    if (error[QLatin1String("code")].isDouble())
        name = QStringLiteral("%1 (%2)").arg(error[QLatin1String("code")].toInt()).arg(name);
    return {text("headline"), text("remedy"), text("cause"), name};
}

Problem noAnswer(const QString &cause)
{
    return {CardDesk::tr("Reading ended without a result."),
            CardDesk::tr("Read the card once more. If it happens again, let \"Diagnose\" look for "
                         "the cause."),
            cause,
            {}};
}

} // namespace

bool operator==(const RoadChoice &one, const RoadChoice &other)
{
    return one.road == other.road && one.device == other.device &&
           one.simulatorPhotos == other.simulatorPhotos;
}

bool operator!=(const RoadChoice &one, const RoadChoice &other)
{
    return !(one == other);
}

CardDesk::CardDesk()
{
    m_again.setSingleShot(true);
    m_absence.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, &CardDesk::proceed);
    connect(&m_absence, &QTimer::timeout, this, [this] {
        m_cardThere.clear();
        emit cardRemoved();
    });
}

void CardDesk::setRoad(const RoadChoice &choice)
{
    m_choice = choice;
    m_card.clear();
    m_cardThere.clear();
    forgetTroubles();
    m_absence.stop();
    stopRun();
    cancel();
    proceed();
}

void CardDesk::putCard(const QString &card, const QString &faults)
{
    m_card = card;
    m_faults = faults;
    m_isCardAnother = true;
    if (m_isAutomatic)
        read();
}

void CardDesk::takeCard()
{
    m_card.clear();
    m_isCardAnother = true;
    if (m_isAutomatic && !m_isAskedFor)
        emit cardRemoved();
}

void CardDesk::read()
{
    if (m_isAskedFor)
        return;
    m_isAskedFor = true;
    m_absence.stop();
    m_cardThere.clear(); // it is shown no longer, so a watch is to report it again
    forgetTroubles();
    emit readingStarted();
    stopRun();
    proceed();
}

void CardDesk::cancel()
{
    if (!m_isAskedFor)
        return;
    m_isAskedFor = false;
    stopRun();
    emit cancelled();
}

void CardDesk::setAutomatic(bool automatic)
{
    m_isAutomatic = automatic;
    forgetTroubles();
    m_absence.stop();
    if (automatic && m_choice.road == ReaderRoad::SIMULATOR) {
        if (!m_card.isEmpty())
            read();
        return;
    }
    if (!automatic && m_task == Task::WATCH)
        stopRun();
    proceed();
}

void CardDesk::stopRun()
{
    m_again.stop();
    m_isDropped = true;
    if (m_run)
        m_run->stop();
    if (m_serviceRun)
        m_serviceRun->stop();
}

/** Begins what there is to do, unless a run is still to end. */
void CardDesk::proceed()
{
    if (isRunning() || m_again.isActive())
        return;
    if (m_isAskedFor)
        run(Task::READ);
    else if (m_isAutomatic && m_choice.road != ReaderRoad::SIMULATOR)
        run(Task::WATCH);
}

void CardDesk::run(Task task)
{
    m_task = task;
    m_isDropped = false;
    m_isCardAnother = false;
    ToolRun::Take takeAsItComes;
    if (task == Task::WATCH) {
        m_failureBefore = std::exchange(m_watchFailure, QString());
        takeAsItComes = [this](QByteArray *output) { takeLines(output); };
    }
    const auto ended = [this](ToolRun::End end, const QByteArray &output) { finish(end, output); };
    const bool isByService = m_choice.road == ReaderRoad::SERVICE ||
                             (m_choice.road == ReaderRoad::CONFIGURED && viewer::isServiceNeeded());
    if (!isByService) {
        runTool(task, takeAsItComes, ended);
        return;
    }
    m_serviceRun = std::make_unique<viewer::ServiceRun>(takeAsItComes, ended, m_language);
    if (task == Task::WATCH)
        m_serviceRun->watch();
    else
        m_serviceRun->read();
}

void CardDesk::runTool(Task task, const ToolRun::Take &take, const ToolRun::Ended &ended)
{
    m_run = std::make_unique<ToolRun>(take, ended);
    m_run->setLanguage(m_language);
    m_run->run(arguments(task), 0);
}

QStringList CardDesk::arguments(Task task) const
{
    QStringList arguments = {QStringLiteral("read")};
    if (task == Task::WATCH)
        arguments = QStringList{QStringLiteral("watch"), QStringLiteral("--events")};
    arguments << QStringLiteral("--json") << QStringLiteral("--inline") << QStringLiteral("all");
    return arguments + roadArguments();
}

QStringList CardDesk::roadArguments() const
{
    switch (m_choice.road) {
    case ReaderRoad::CONFIGURED:
    case ReaderRoad::SERVICE:
        return {};
    case ReaderRoad::LIBRARY:
        return {QStringLiteral("--road"), QStringLiteral("library")};
    case ReaderRoad::USB: {
        QStringList words = {QStringLiteral("--road"), QStringLiteral("usb")};
        if (m_choice.device)
            words << QStringLiteral("--device") << toText(*m_choice.device);
        if (m_choice.simulatorPhotos)
            words << QStringLiteral("--simulator-photos");
        return words;
    }
    case ReaderRoad::SIMULATOR:
        break;
    }
    if (m_card.isEmpty())
        return {QStringLiteral("--simulate"), QStringLiteral("resident"), QStringLiteral("--fault"),
                QStringLiteral("no-card")};
    QStringList words = {QStringLiteral("--simulate"), m_card};
    if (!m_faults.trimmed().isEmpty())
        words << QStringLiteral("--fault") << m_faults;
    return words;
}

void CardDesk::takeLines(QByteArray *output)
{
    for (int end = output->indexOf('\n'); end >= 0; end = output->indexOf('\n')) {
        const QByteArray line = output->left(end);
        output->remove(0, end + 1);
        if (!m_isDropped)
            takeEvent(QJsonDocument::fromJson(line).object());
    }
}

void CardDesk::takeEvent(const QJsonObject &event)
{
    const QString name = event[QLatin1String("event")].toString();
    const QJsonObject error = event[QLatin1String("error")].toObject();
    if (name == QLatin1String("reader-added")) {
        if (!m_cardThere.isEmpty())
            m_absence.start(TIME_OF_FIRST_LOOK_MS);
        const bool wasMissed = m_isReaderMissed;
        forgetTroubles();
        if (wasMissed)
            emit readerAdded();
    } else if (name == QLatin1String("reader-removed")) {
        m_cardThere.clear();
        m_absence.stop();
        forgetTroubles();
        m_isReaderMissed = true;
        emit readerRemoved();
    } else if (name == QLatin1String("card-removed")) {
        m_cardThere.clear();
        forgetTroubles();
        emit cardRemoved();
    } else if (name == QLatin1String("card-read")) {
        deliver(event[QLatin1String("card")].toObject(), Task::WATCH);
    } else if (!error.isEmpty()) {
        reportWatchFailure(problemIn(error));
    } else if (m_run) {
        m_run->fail(); // not what the tool prints
    }
}

/** A card, with or without an error beside it, or an error alone. */
void CardDesk::deliver(const QJsonObject &object, Task task)
{
    const QJsonObject error = object[QLatin1String("error")].toObject();
    const Problem problem = error.isEmpty() ? Problem() : problemIn(error);
    std::optional<Card> card = cardFromJson(object);
    if (!card) {
        emit failed(error.isEmpty() ? noAnswer(tr("idcard-reader printed what is not a card."))
                                    : problem);
        return;
    }
    const bool isKnown = task == Task::WATCH && m_cardThere == card->digest();
    m_absence.stop();
    forgetTroubles();
    m_cardThere = card->digest();
    if (!isKnown)
        emit cardRead(std::make_shared<const Card>(std::move(*card)), problem);
}

/** A watch does not repeat itself, so each failure is another card's, or the same card once more;
 * but a watch that ended begins again by itself, and may find what ended the one before. */
void CardDesk::reportWatchFailure(const Problem &problem)
{
    m_absence.stop();
    m_cardThere.clear();
    m_isReaderMissed = true;
    m_watchFailure = problem.name + problem.headline + problem.cause;
    if (std::exchange(m_failureBefore, QString()) != m_watchFailure)
        emit failed(problem);
}

void CardDesk::forgetTroubles()
{
    m_watchFailure.clear();
    m_failureBefore.clear();
    m_isReaderMissed = false;
}

/** What runs has ended; returns how, in words. */
QString CardDesk::endRun()
{
    QString how = m_run ? m_run->howItEnded() : m_serviceRun->howItEnded();
    if (m_run)
        m_run.release()->deleteLater();
    else
        m_serviceRun.release()->deleteLater();
    return how;
}

void CardDesk::finish(ToolRun::End end, const QByteArray &output)
{
    const Task task = std::exchange(m_task, Task::NONE);
    const bool isDropped = m_isDropped || end == ToolRun::End::STOPPED;
    const QString how = endRun();
    if (!isDropped && task == Task::READ) {
        m_isAskedFor = false;
        const QJsonObject answer = QJsonDocument::fromJson(output).object();
        if (answer.isEmpty())
            emit failed(noAnswer(how));
        else
            deliver(answer, task);
        followSimulator();
    } else if (!isDropped) {
        m_again.start(PAUSE_AFTER_FAILED_WATCH_MS);
        if (m_watchFailure.isEmpty())
            reportWatchFailure(noAnswer(how));
    }
    proceed();
}

/** Its card may have been changed while one was read, which no watch reports. */
void CardDesk::followSimulator()
{
    if (!m_isCardAnother || !m_isAutomatic || m_choice.road != ReaderRoad::SIMULATOR)
        return;
    if (!m_card.isEmpty())
        read();
    else if (!m_cardThere.isEmpty())
        emit cardRemoved();
}

} // namespace app
