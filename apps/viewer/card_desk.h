#pragma once

// Has cards read by idcard-reader, which runs as a child: once when it is asked to, or each new
// card while it watches the reader. The child may crash, hang or print anything; this program goes
// on.

#include <memory>

#include <QJsonObject>
#include <QObject>
#include <QTimer>

#include "apps/card/card.h"
#include "apps/process/tool_run.h"
#include "apps/reading/usb_devices.h"
#include "apps/viewer/service_run.h"

namespace app
{

enum class ReaderRoad {
    CONFIGURED, ///< as the machine's or the user's configuration file says
    LIBRARY,    ///< the reader maker's
    USB,
    SERVICE, ///< the D-Bus service
    SIMULATOR,
};

struct RoadChoice {
    ReaderRoad road = ReaderRoad::CONFIGURED;
    std::optional<UsbIds> device; ///< of `USB`; nothing: the only reader on the bus
    bool simulatorPhotos = false; ///< of `USB`: the reader is a simulated one, as are its photos
};

bool operator==(const RoadChoice &one, const RoadChoice &other);
bool operator!=(const RoadChoice &one, const RoadChoice &other);

/** Why there is no card, or what is wrong with the reading of the one there is. */
struct Problem {
    QString headline;
    QString remedy;
    QString cause;
    QString name; ///< of the result, with its code; empty when there is none
};

class CardDesk : public QObject
{
    Q_OBJECT

public:
    CardDesk();
    /** Ends the child, and waits for that. */
    ~CardDesk() override = default;

    /** What a reading that is under way still gives is dropped; the simulator has no card. */
    void setRoad(const RoadChoice &choice);

    /** Lays a card on the simulator, by its name or its file, with these faults. */
    void putCard(const QString &card, const QString &faults);
    void takeCard();

    /** Reads once. Asked while it reads, it does not read again. */
    void read();
    /** Gives the reading up that was asked for. */
    void cancel();
    bool isReading() const { return m_isAskedFor; }

    /** From now on reads each new card. */
    void setAutomatic(bool automatic);

    /** The language of messages; empty: the user's. */
    void setLanguage(const QString &language) { m_language = language; }

signals:
    void readingStarted();
    void cancelled();
    /** `problem` has no headline when all of the card was read. */
    void cardRead(const app::CardPointer &card, const app::Problem &problem);
    void failed(const app::Problem &problem);
    /** While it watches. */
    void cardRemoved();
    /** After it was removed, or a failure. */
    void readerAdded();
    void readerRemoved();

private:
    enum class Task { NONE, READ, WATCH };

    void proceed();
    void run(Task task);
    void runTool(Task task, const ToolRun::Take &take, const ToolRun::Ended &ended);
    bool isRunning() const { return m_run || m_serviceRun; }
    QStringList arguments(Task task) const;
    QStringList roadArguments() const;
    void stopRun();
    QString endRun();
    void takeLines(QByteArray *output);
    void takeEvent(const QJsonObject &event);
    void finish(ToolRun::End end, const QByteArray &output);
    void deliver(const QJsonObject &object, Task task);
    void reportWatchFailure(const Problem &problem);
    void forgetTroubles();
    void followSimulator();

    RoadChoice m_choice;
    QString m_card; ///< on the simulator; empty: none
    QString m_faults;
    bool m_isCardAnother = false; ///< than when the reading began
    QString m_language;
    // One of the two while it reads or watches.
    std::unique_ptr<ToolRun> m_run;
    std::unique_ptr<viewer::ServiceRun> m_serviceRun;
    Task m_task = Task::NONE;
    bool m_isDropped = false; ///< what the run still gives is of no use
    bool m_isAutomatic = false;
    bool m_isAskedFor = false;
    bool m_isReaderMissed = false; ///< it was unplugged, or a watch failed, perhaps without one
    QTimer m_again;                ///< before a watch that failed begins again
    QTimer m_absence;              ///< after which a card that was read is gone when a watch begins
    QByteArray m_cardThere;  ///< the digest of the card read last, until it is known to be off
    QString m_watchFailure;  ///< the last one of this watch; empty: it had none since a card
    QString m_failureBefore; ///< likewise of the watch before, until this one has said anything
};

} // namespace app
