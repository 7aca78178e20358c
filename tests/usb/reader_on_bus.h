#pragma once

// A simulated reader with an emulated bus of its own, for the tests of programs.

#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include <QDir>

#include "tests/support/process.h"
#include "tests/usb/emulated_bus.h"
#include "tests/usb/other_device.h"

namespace usb_test
{

class ReaderOnBus
{
public:
    /** Beside the reader, a device of these ids may be plugged in. */
    explicit ReaderOnBus(UsbIds other = {0x046D, 0xC31C}) : m_otherDevice(other) {}

    EmulatedBus &bus() { return m_bus; }
    simulator::VirtualReader &reader() { return m_reader; }
    OtherDevice &otherDevice() { return m_otherDevice; }

    /** Lays a card on the reader, none for an empty name, and sets its faults. */
    void prepare(const QString &card, const QString &faults)
    {
        QString problem;
        if (!card.isEmpty()) {
            ASSERT_TRUE(m_reader.slot().putCard(card, simulator::PutAs::DESCRIBED, &problem))
                << problem.toStdString();
        }
        ASSERT_TRUE(m_reader.slot().setFaults(faults, &problem)) << problem.toStdString();
    }

    /** The same between two looks of a program that watches. */
    void lay(const QString &card, const QString &faults = {})
    {
        m_bus.changeWhenUnused([&] { prepare(card, faults); });
    }

    void setFaults(const QString &faults)
    {
        m_bus.changeWhenUnused([&] { prepare({}, faults); });
    }

    void takeOff()
    {
        m_bus.changeWhenUnused([this] { m_reader.slot().takeCard(); });
    }

    void plugIn(const QString &card, const QString &faults = {})
    {
        prepare(card, faults);
        m_bus.add(m_reader);
    }

    /**
     * Changes the bus while a program that listens to it is halted: umockdev ends this process if a
     * listener leaves while it is spoken to. The request that is being answered ends before, for
     * which a halted program would be waited for.
     */
    void changeBeneath(pid_t program, const std::function<void()> &change)
    {
        std::optional<HaltedProcess> halted;
        m_bus.change([&] {
            halted.emplace(program);
            change();
        });
    }

    void changeBeneath(const RunningProcess &program, const std::function<void()> &change)
    {
        changeBeneath(program.id(), change);
    }

    QString node(const simulator::UsbDevice &device) const
    {
        const auto address = m_bus.address(device);
        return QStringLiteral("/dev/bus/usb/%1/%2")
            .arg(address.bus, 3, 10, QLatin1Char('0'))
            .arg(address.device, 3, 10, QLatin1Char('0'));
    }

    /** Where the system shows what it knows of the device. */
    QString systemFolder(const simulator::UsbDevice &device) const
    {
        const auto address = m_bus.address(device);
        return QStringLiteral("%1/sys/bus/usb/devices/%2-%3/")
            .arg(m_bus.folder())
            .arg(address.bus)
            .arg(address.device);
    }

    /** Binds a driver to the device's interface 0, as the system shows it. */
    void bindDriver(const simulator::UsbDevice &device, const QString &driver) const
    {
        const QString system = systemFolder(device);
        const QString interface = system + QDir(system).dirName() + ":1.0";
        ASSERT_TRUE(QDir().mkpath(interface));
        ASSERT_TRUE(QFile::link("../../../../../bus/usb/drivers/" + driver, interface + "/driver"));
    }

    /** A program in another process gives back by itself, unless it is ended by force. */
    void leaveItToTheSystem() { m_isAllGivenBack = false; }

    /** At the end of a test. */
    void expectAllGivenBack() const
    {
        if (m_isAllGivenBack) {
            EXPECT_EQ(m_bus.leftOvers().join('\n').toStdString(), "");
        }
        EXPECT_EQ(m_bus.misuses().join('\n').toStdString(), "");
    }

    /** Runs the tool without rights beyond those of an ordinary user. */
    static ProcessResult runToolAsOrdinaryUser(const QStringList &arguments, ProcessInput input)
    {
        QStringList command = ordinaryUserCommand();
        command << QDir(QStringLiteral(IDCARD_BUILD_BIN_DIR)).filePath("idcard-reader")
                << arguments;
        return runProcess(command.first(), command.mid(1), input);
    }

private:
    OtherDevice m_otherDevice; // longer than the bus
    simulator::VirtualReader m_reader;
    EmulatedBus m_bus;
    bool m_isAllGivenBack = true;
};

} // namespace usb_test
