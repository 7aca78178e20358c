// The doctor's findings as text and as JSON.

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>

#include "apps/doctor/report.h"
#include "tests/doctor/doctor_machine.h"

using namespace app;
using namespace app::doctor;
using testing::HasSubstr;
using testing::Not;

namespace
{

TEST(Report, HasMarkersGroupsRemediesAndASum)
{
    Environment machine = fineMachine();
    machine.roads = Roads::USB;
    machine.locale = {"", true, "C", "ANSI_X3.4-1968"};
    UsbNode &node = machine.usb.nodes.first();
    node.device.mayOpen = false;
    node.rights.mode = 0600;
    node.rights.group = "root";
    EXPECT_EQ(toReport(judge(machine), Roads::USB).toStdString(),
              R"(General
ok       Library          version:1.5.0
ok       Qt               5.15.8, built with 5.11.3
warning  Locale           "C" has the encoding ANSI_X3.4-1968, not UTF-8: a
                          host application may garble Chinese texts and file
                          names
                          -> Start the host application in a UTF-8 locale, for
                          instance:
                             export LC_ALL=C.UTF-8
ok       Configuration    /etc/idcard-reader.conf: road = usb, device =
                          1209:0001

Reading over USB
ok       Reader           1209:0001 at /dev/bus/usb/001/002, Maker Reader
                          (vendor-specific)
FAILURE  Permission       This user may not open /dev/bus/usb/001/002: mode
                          0600, owner root, group root
                          -> If this device is the reader, open it to the user
                          at the machine and to those of the group, as root:
                             idcard-reader-access --device 1209:0001
FAILURE  udev rule        /etc/udev/rules.d/69-idcard-reader.rules is for
                          1209:0001, but has not been applied: the node is not
                          of the group idcard-reader
                          -> Load it, then plug the reader in again, as root:
                             udevadm control --reload
                             udevadm trigger --subsystem-match=usb --action=add
ok       Group            clerk is in "idcard-reader"
ok       Kernel driver    None is bound
ok       In use           By no program

Photos, by either road
ok       Photo decoder    /usr/lib/libdecoder.so

Web pages
ok       Sites            https://pms.example, http://intranet

Reading through the D-Bus service
ok       Service          a card was read through it

2 failures, 1 warning, 10 fine.
)");
}

TEST(Report, NameOfADeviceCannotSteerTheTerminal)
{
    Environment machine = fineMachine();
    machine.usb.nodes.first().device.product = QStringLiteral("\x1b[2J\nFAILURE  forged");
    const QString report = toReport(judge(machine), Roads::BOTH);
    EXPECT_FALSE(report.contains(QChar(0x1B)));
    EXPECT_FALSE(report.contains("\nFAILURE"));
}

TEST(Report, FailureWithoutARoadNamesTheRoads)
{
    Environment machine = fineMachine();
    machine.usb.nodes.clear();
    EXPECT_THAT(toReport(judge(machine), Roads::BOTH).simplified().toStdString(),
                HasSubstr("--road library or --road usb"));
    EXPECT_THAT(toReport(judge(machine), Roads::USB).simplified().toStdString(),
                Not(HasSubstr("--road library or --road usb")));
}

TEST(ReportJson, HoldsTheSumAndEveryFinding)
{
    Environment machine = fineMachine();
    machine.usb.nodes.first().device.driver = "usbserial";
    const QJsonObject report =
        QJsonDocument::fromJson(toReportJson(judge(machine), Roads::BOTH)).object();
    EXPECT_EQ(report["road"].toString(), "both");
    EXPECT_EQ(report["result"].toString(), "warning");
    EXPECT_EQ(report["counts"].toObject(),
              (QJsonObject{{"ok", 18}, {"warning", 1}, {"failure", 0}}));
    EXPECT_EQ(report["findings"].toArray().size(), 19);
    const QJsonObject driver = report["findings"].toArray().at(9).toObject();
    EXPECT_EQ(driver["group"].toString(), "usb");
    EXPECT_EQ(driver["check"].toString(), "usb-driver");
    EXPECT_EQ(driver["level"].toString(), "warning");
    EXPECT_THAT(driver["text"].toString().toStdString(), HasSubstr("\"usbserial\" is bound"));
    EXPECT_THAT(driver["remedy"].toString().toStdString(), HasSubstr("as root"));
    EXPECT_EQ(driver["commands"].toArray().size(), 2);
}

} // namespace
