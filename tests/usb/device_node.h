#pragma once

// One device node of the emulated bus: answers what the kernel answers to programs that use it.
// Owns what each of them holds; the device decides what a transfer does.

#include <chrono>
#include <deque>
#include <list>
#include <memory>
#include <mutex>
#include <vector>

#include <QString>
#include <QStringList>

// GLib has members of the names that are Qt's keywords.
#undef signals
#undef slots
#undef emit
#undef foreach
#include <umockdev.h>

#include "tests/usb/emulated_bus.h"

namespace usb_test
{

/** Releases a GObject. */
struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};

using DataRef = std::unique_ptr<UMockdevIoctlData, Unref>;

class DeviceNode
{
public:
    /** `mutex` is held whenever the device is asked; `changed` is notified that it may say
     * otherwise now. */
    DeviceNode(simulator::UsbDevice &device, const NodeTraits &traits, std::mutex &mutex,
               std::function<void()> changed);
    ~DeviceNode();
    DeviceNode(const DeviceNode &) = delete;
    DeviceNode &operator=(const DeviceNode &) = delete;

    [[nodiscard]] UMockdevIoctlBase *handler() const { return m_handler.get(); }
    [[nodiscard]] simulator::UsbDevice &device() const { return m_device; }

    // With the mutex held:

    [[nodiscard]] Holdings holdings() const;
    [[nodiscard]] const QStringList &calls() const { return m_calls; }
    [[nodiscard]] const QStringList &misuses() const { return m_misuses; }
    [[nodiscard]] QString boundDriver() const { return m_boundDriver; }
    /** The device is there again, in a node of its own: nobody holds it or asked anything. */
    void renew();
    [[nodiscard]] bool isBoundAsBefore() const { return m_boundDriver == m_traits.driver; }

private:
    using Clock = std::chrono::steady_clock;

    struct Transfer {
        DataRef request; ///< the program's usbdevfs_urb
        DataRef buffer;
        bool isRead = false;
        simulator::UsbTransfer outcome;
        int status = 0; ///< as the kernel reports it
        bool ends = true;
        Clock::time_point end; ///< when, if it does

        /** It ends now, and nothing was moved. */
        void cut(int cutStatus);
        /** It ends now because the device has gone. */
        void lose();
    };

    /** What one program holds that has opened the node. */
    struct Opening {
        std::unique_ptr<UMockdevIoctlClient, Unref> client;
        bool used = false; ///< what has only connected may have failed to open the node
        bool claimed = false;
        std::list<Transfer> transfers;
    };

    struct Answer {
        long result;
        int error;
    };
    static Answer success(long result = 0) { return {result, 0}; }
    static Answer failure(int error) { return {-1, error}; }

    static void onConnected(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self);
    static gboolean onIoctl(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self);

    Answer answer(Opening &opening, unsigned long request, UMockdevIoctlData *argument);
    Answer answerPresent(Opening &opening, unsigned long request, UMockdevIoctlData *argument);
    Answer claim(Opening &opening, UMockdevIoctlData *argument, bool detaches);
    Answer release(Opening &opening);
    Answer reset();
    Answer getDriver(UMockdevIoctlData *argument);
    Answer driverRequest(UMockdevIoctlData *argument);
    Answer submit(Opening &opening, UMockdevIoctlData *argument);
    Answer reap(Opening &opening, UMockdevIoctlData *argument);
    Answer discard(Opening &opening, UMockdevIoctlData *argument);
    Answer misuse(const QString &what, int error);
    [[nodiscard]] bool isOpen(const Opening &opening) const;
    [[nodiscard]] Opening *openingOf(UMockdevIoctlClient *client);
    void forgetClosed();

    simulator::UsbDevice &m_device;
    const NodeTraits m_traits;
    std::mutex &m_mutex;
    std::function<void()> m_changed;
    std::unique_ptr<UMockdevIoctlBase, Unref> m_handler;
    std::list<Opening> m_openings;
    int m_timesClosed = 0; ///< what was opened and is forgotten
    QString m_boundDriver;
    QStringList m_calls;
    QStringList m_misuses;
};

} // namespace usb_test
