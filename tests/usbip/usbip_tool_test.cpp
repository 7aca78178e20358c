// The real client of the protocol, the usbip tool, against the running server. Attaching needs the
// kernel's vhci-hcd and root, listing needs neither.

#include <gmock/gmock.h>

#include <QFileInfo>

#include "tests/support/process.h"

using testing::HasSubstr;

namespace
{

ProcessResult runUsbip(const QByteArray &port, const QStringList &arguments)
{
    return runProcess(IDCARD_USBIP,
                      QStringList{"--tcp-port", QString::fromLatin1(port)} + arguments);
}

class UsbipTool : public testing::Test
{
protected:
    UsbipTool()
    {
        const QByteArray line = reader.nextLine();
        port = line.mid(line.lastIndexOf(' ') + 1);
    }

    RunningProcess reader{"idcard-virtual-reader", {"--port", "0", "--device", "1209:0001"}};
    QByteArray port;
};

TEST_F(UsbipTool, ListsTheReader)
{
    const ProcessResult run = runUsbip(port, {"list", "-r", "127.0.0.1"});
    EXPECT_EQ(run.exitStatus, 0) << run.error();
    const std::string list = (run.standardOutput + run.standardError).toStdString();
    EXPECT_THAT(list, HasSubstr("1-1: "));
    EXPECT_THAT(list, HasSubstr("(1209:0001)"));
    EXPECT_THAT(list, HasSubstr("(ff/00/00)"));
}

TEST_F(UsbipTool, ListsNothingWhileTheReaderIsUnplugged)
{
    reader.write("unplug\n");
    ASSERT_EQ(reader.nextLine(), "ok");
    const ProcessResult run = runUsbip(port, {"list", "-r", "127.0.0.1"});
    EXPECT_THAT((run.standardOutput + run.standardError).toStdString(),
                HasSubstr("no exportable devices found"));
}

TEST_F(UsbipTool, ImportsTheReader)
{
    // Without vhci-hcd the tool gives up once it has it; with the module it would attach it here.
    if (QFileInfo::exists("/sys/devices/platform/vhci_hcd.0"))
        GTEST_SKIP() << "the reader would be attached to this machine";
    runUsbip(port, {"attach", "-r", "127.0.0.1", "-b", "1-1"});
    EXPECT_TRUE(reader.waitForError("has attached the reader"));
    EXPECT_TRUE(reader.waitForError("has detached the reader"));
}

} // namespace
