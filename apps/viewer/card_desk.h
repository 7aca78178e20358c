#pragma once

// Reads cards for a program with an event loop, by the road that is chosen: once when it is asked
// to, or each new card while it looks at the reader by itself. Belongs to the GUI thread, which a
// reading over USB does not hold up.

#include <memory>

#include <QElapsedTimer>
#include <QObject>
#include <QThread>
#include <QTimer>

#include "apps/card/card_presence.h"
#include "apps/card/simulator_library.h"
#include "apps/card/usb_reading.h"

namespace app
{

enum class ReaderRoad { MAKERS_LIBRARY, USB, SIMULATOR };

struct RoadChoice {
    ReaderRoad road = ReaderRoad::MAKERS_LIBRARY;
    UsbIds device;                ///< of `Usb`
    bool simulatorPhotos = false; ///< of `Usb`: the reader is a simulated one, as are its photos
};

using CardPointer = std::shared_ptr<const Card>;

class CardDesk : public QObject
{
    Q_OBJECT

public:
    CardDesk();
    /** Waits for a reading over USB that is under way, and takes the simulator out. */
    ~CardDesk() override;

    /** What a reading that is under way still gives is dropped, and the simulator's card is off. */
    void setRoad(const RoadChoice &choice);

    /** Lays a card on the simulator, with these faults. Whether it could be. */
    bool putCard(const QString &card, const QString &faults);
    void takeCard();

    /** Reads once. Asked while it reads, it does not read again. */
    void read();

    /** From now on looks at the reader again and again, and reads each new card. */
    void setAutomatic(bool automatic);

    /** Whether no reading is under way over USB any more, after waiting for so long. */
    bool endsWithin(int milliseconds);

signals:
    /** Before the GUI thread is held up; what is painted at once is seen. */
    void readingStarted();
    /** The message says that it was read, or what of it could not be. */
    void cardRead(const app::CardPointer &card, const app::Message &message);
    void failed(const app::Message &message);
    /** Looked by itself, and there is no card, or none any more. */
    void cardAwaited();

private:
    struct Look {
        CardPointer card;
        ExitStatus status = ExitStatus::DONE;
        int code = 0;
        Message message;
    };

    void start();
    void lookThroughLibrary();
    void takeUsbOutcome();
    SimulatorProblem prepareSimulator();
    void finish(const Look &look);
    void report(const Look &look, Sighting sighting);
    static Look decoded(const UsbOutcome &outcome);

    RoadChoice m_choice;
    SimulatorLibrary m_simulator;
    CardPresence m_presence;
    std::unique_ptr<QThread> m_usbRead; ///< while a reading over USB is under way
    UsbOutcome m_usbOutcome;            ///< once it has ended
    QTimer m_nextLook;
    QElapsedTimer m_lookTime;
    bool m_isAutomatic = false;
    bool m_isReading = false;
    bool m_isAskedFor = false;    ///< somebody waits for what comes, be it a card that was seen
    bool m_isAwaiting = false;    ///< `cardAwaited` is what was reported last
    bool m_isRoadChanged = false; ///< since the reading under way began
};

} // namespace app

Q_DECLARE_METATYPE(app::CardPointer)
