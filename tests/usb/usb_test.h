#pragma once

// The strict end of a USB test: whatever was not expected, not used or not released fails it.

#include <memory>
#include <string>
#include <vector>

#include <QByteArray>
#include <QMap>
#include <QStringList>

#include <gtest/gtest.h>

#include "tests/support/message_log.h"
#include "tests/usb/emulated_bus.h"
#include "tests/usb/reader_frames.h"
#include "tests/usb/scripted_device.h"

namespace usb_test
{

using Lines = std::vector<std::string>;

/** Several groups of lines as one. */
Lines operator+(Lines first, const Lines &second);

/** What a process has open and which files lie in its folder; nothing may be added. */
class ProcessAccount
{
public:
    ProcessAccount();

    /** Lets so many descriptors more be open. */
    void allow(int descriptors) { m_allowed += descriptors; }

    /** What was added since. Waits a second for what other threads release. */
    [[nodiscard]] QStringList additions() const;

private:
    QMap<int, QString> m_descriptors; ///< what each stands for
    QStringList m_files;
    int m_allowed = 0;
};

/** Opens a device once: some libraries keep what they open first. Whether it could be opened. */
bool warmUp();

/** What is seen through the log, in order; the lines that `expected` has not are complaints. */
QStringList logComplaints(const std::vector<MessageLog::Message> &log, const Lines &expected);

/** Adds the two exchanges by which a reader gets ready. */
void expectReady(ScriptedDevice &device);

/** The test of a reader on a bus of its own. */
class UsbTest : public testing::Test
{
protected:
    UsbTest();
    ~UsbTest() override;

    void TearDown() override;

    EmulatedBus &bus() { return *m_bus; }

    /** These lines, and no others between them, are to be in the log at the end. */
    void expectLog(const Lines &lines);

    /** A device of this test, not yet on the bus. */
    template <typename Device = ScriptedDevice, typename... Arguments>
    Device &make(Arguments &&...arguments)
    {
        auto device = std::make_unique<Device>(std::forward<Arguments>(arguments)...);
        Device &made = *device;
        m_devices.push_back(std::move(device));
        return made;
    }

    /** The same, with a script that begins with the two exchanges by which a reader gets ready. */
    ScriptedDevice &makeReady()
    {
        ScriptedDevice &device = make();
        expectReady(device);
        return device;
    }

    /** Puts a device of this test on the bus. At the end its script is to be used up. */
    void add(ScriptedDevice &device, const NodeTraits &traits = {});

    /** A device of this test on the bus, without a script. */
    ScriptedDevice &plugIn(const UsbIds &ids = simulator::DEFAULT_READER_IDS)
    {
        ScriptedDevice &device = make(ids);
        add(device);
        return device;
    }

    /** What is open from now on is not to be given back: the bus itself listens at every node. */
    void startAccount() { m_account = {}; }

    /** What is in the log so far, for a test that judges it itself; at the end it counts no more.
     */
    Lines takeLog();

private:
    std::vector<std::unique_ptr<ScriptedDevice>> m_devices;
    std::unique_ptr<EmulatedBus> m_bus;
    ProcessAccount m_account;
    MessageLog m_log;
    std::size_t m_taken = 0; ///< lines of the log
    Lines m_expectedLog;
};

// What the log says of each step that succeeds.
namespace lines
{
const Lines OPENED = {"found usb device!", "open usb device success!"};
const Lines LOOKED_UP = {"write pipe2 success!", "lookup_resp success!", "lookup success!"};
const Lines SELECTED = {"write pipe2 success!", "select_resp success!", "select success!"};
const Lines READY = OPENED + LOOKED_UP + SELECTED;
} // namespace lines

} // namespace usb_test
