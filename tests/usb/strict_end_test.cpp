// The strict end itself: what is not as it should be does not go unnoticed.

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QtDebug>

#include <gmock/gmock.h>
#include <libusb.h>

#include "tests/support/files.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using testing::ElementsAre;
using testing::IsEmpty;

/** On a bus with one device, a program of this process that misbehaves. */
class StrictEnd : public testing::Test
{
public:
    StrictEnd()
    {
        m_bus.add(m_device);
        EXPECT_EQ(libusb_init(&m_context), 0);
    }
    ~StrictEnd() override { libusb_exit(m_context); }
    StrictEnd(const StrictEnd &) = delete;
    StrictEnd(StrictEnd &&) = delete;
    StrictEnd &operator=(const StrictEnd &) = delete;
    StrictEnd &operator=(StrictEnd &&) = delete;

protected:
    EmulatedBus &bus() { return m_bus; }
    ScriptedDevice &device() { return m_device; }

    libusb_device_handle *open()
    {
        return libusb_open_device_with_vid_pid(m_context, simulator::DEFAULT_READER_IDS.vendor,
                                               simulator::DEFAULT_READER_IDS.product);
    }

    std::vector<std::string> leftOvers()
    {
        std::vector<std::string> texts;
        for (const QString &one : m_bus.leftOvers())
            texts.push_back(one.toStdString());
        return texts;
    }

private:
    ScriptedDevice m_device;
    EmulatedBus m_bus;
    libusb_context *m_context = nullptr;
};

TEST_F(StrictEnd, NodeNotClosed_IsFound)
{
    libusb_device_handle *const handle = open();
    ASSERT_NE(handle, nullptr);
    EXPECT_THAT(leftOvers(), ElementsAre("1 device nodes are open"));
    libusb_close(handle);
    EXPECT_THAT(leftOvers(), IsEmpty());
}

TEST_F(StrictEnd, InterfaceNotReleased_IsFound)
{
    libusb_device_handle *const handle = open();
    ASSERT_EQ(libusb_claim_interface(handle, 0), 0);
    EXPECT_THAT(leftOvers(), ElementsAre("1 device nodes are open", "1 interfaces are claimed"));
    libusb_close(handle);
    EXPECT_THAT(leftOvers(), IsEmpty());
}

TEST_F(StrictEnd, TransferWithoutAClaim_IsFound)
{
    libusb_device_handle *const handle = open();
    unsigned char byte = 0;
    EXPECT_NE(libusb_bulk_transfer(handle, 0x02, &byte, 1, nullptr, 100), 0);
    libusb_close(handle);
    EXPECT_THAT(leftOvers(), ElementsAre("transfer without a claim"));
}

TEST_F(StrictEnd, DriverNotReattached_IsFound)
{
    ScriptedDevice bound({0x1209, 0x0002});
    {
        EmulatedBus other;
        other.add(bound, {QStringLiteral("usbserial_generic"), true});
        libusb_context *context = nullptr;
        ASSERT_EQ(libusb_init(&context), 0);
        libusb_device_handle *const handle =
            libusb_open_device_with_vid_pid(context, 0x1209, 0x0002);
        ASSERT_NE(handle, nullptr);
        libusb_set_auto_detach_kernel_driver(handle, 1);
        ASSERT_EQ(libusb_claim_interface(handle, 0), 0);
        libusb_close(handle); // without a release
        libusb_exit(context);
        EXPECT_EQ(other.leftOvers(), QStringList("device 2 has lost its kernel driver"));
    }
}

TEST_F(StrictEnd, ScriptNotFollowed_IsFound)
{
    device().expectWrite(0x02, QByteArray::fromHex("0102"));
    device().expectRead(0x81, 4, QByteArray::fromHex("05060708"));
    device().expectRead(0x85, 4, QByteArray());
    device().write(0x02, QByteArray::fromHex("0103"));
    device().read(0x81, 5);
    EXPECT_EQ(device().complaints(),
              (QStringList{"write to 0x02 of 2 bytes 01 03 instead of: write to 0x02 of 2 bytes "
                           "01 02",
                           "read from 0x81 of 5 bytes instead of: read from 0x81 of 4 bytes",
                           "not used: read from 0x85 of 4 bytes"}));
    device().read(0x85, 4);
    device().read(0x85, 4);
    EXPECT_EQ(device().complaints().last(),
              QStringLiteral("after the end of the script: read from 0x85 of 4 bytes"));
}

TEST(LogComplaints, LineTooManyMissingOrInAnotherPlace_IsFound)
{
    const struct {
        Lines logged;
        QStringList complaints; ///< when "one" and "two" are expected
    } cases[] = {
        {{"one", "two"}, {}},
        {{"one", "two", "three"}, {"log line 3 is \"three\" instead of \"(nothing)\""}},
        {{"one"}, {"log line 2 is \"(nothing)\" instead of \"two\""}},
        {{"two", "one"},
         {"log line 1 is \"two\" instead of \"one\"", "log line 2 is \"one\" instead of \"two\""}},
    };
    for (const auto &c : cases) {
        const MessageLog log;
        for (const std::string &line : c.logged)
            qDebug("%s", line.c_str());
        EXPECT_EQ(logComplaints(log.messages(), {"one", "two"}), c.complaints);
    }
}

TEST(LogComplaints, LineOfAnotherLevel_IsFound)
{
    const MessageLog log;
    qWarning("one");
    EXPECT_EQ(logComplaints(log.messages(), {"one"}),
              QStringList("log line 1 is not a debug line of category \"default\""));
}

TEST(ProcessAccount, DescriptorLeftOpen_IsFound)
{
    const ProcessAccount account;
    const int descriptor = ::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    EXPECT_EQ(account.additions().size(), 1);
    close(descriptor);
    EXPECT_EQ(account.additions(), QStringList());
}

TEST(ProcessAccount, FileLeftBehind_IsFound)
{
    const ProcessAccount account;
    writeFile("left-behind", "");
    EXPECT_EQ(account.additions(), QStringList("file \"left-behind\" was left"));
    QFile::remove("left-behind");
    EXPECT_EQ(account.additions(), QStringList());
}

} // namespace
