// The list of USB devices as text.

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "apps/reading/usb_list.h"

using namespace app;
using testing::HasSubstr;

namespace
{

UsbDevice reader()
{
    UsbDevice device;
    device.bus = 1;
    device.address = 12;
    device.ids = {0x1209, 0x00AB};
    device.deviceClass = QStringLiteral("vendor-specific");
    device.manufacturer = QStringLiteral("Maker");
    device.product = QStringLiteral("Card Reader");
    device.hasReaderPipes = true;
    device.node = QStringLiteral("/dev/bus/usb/001/012");
    device.mayOpen = true;
    return device;
}

TEST(UsbIdsText, HasFourLowerCaseDigitsEach)
{
    EXPECT_EQ(toText(UsbIds{0x1209, 0x00AB}), "1209:00ab");
    EXPECT_EQ(toText(UsbIds{0xFFFF, 0x0000}), "ffff:0000");
}

TEST(UsbListTable, ShowsDevicesUnderHeadingsThoseThatSayNothingByTheirClass)
{
    EXPECT_EQ(toTable({reader()}).toStdString(),
              "DEVICE     NODE                  MAY OPEN  READER'S PIPES  WHAT IT IS\n"
              "1209:00ab  /dev/bus/usb/001/012  yes       yes             Maker Card Reader "
              "(vendor-specific)\n");
    UsbDevice device = reader();
    device.manufacturer.clear();
    device.product.clear();
    EXPECT_TRUE(toTable({device}).endsWith("  (vendor-specific)\n"));
    EXPECT_TRUE(toTable(QVector<UsbDevice>()).isEmpty());
}

TEST(UsbListTable, NameOfADeviceCannotSteerTheTerminal)
{
    UsbDevice device = reader();
    device.product = QStringLiteral("\x1b[2J\nforged");
    const QString table = toTable({device});
    EXPECT_FALSE(table.contains(QChar(0x1B)));
    EXPECT_EQ(table.count(QLatin1Char('\n')), 2);
}

TEST(UsbListJson, HoldsEverythingOfADeviceAndNullForWhatItDoesNotSay)
{
    QJsonObject expected{{"device", "1209:00ab"},   {"bus", 1},
                         {"address", 12},           {"node", "/dev/bus/usb/001/012"},
                         {"mayOpen", true},         {"class", "vendor-specific"},
                         {"manufacturer", "Maker"}, {"product", "Card Reader"},
                         {"hasReaderPipes", true}};
    UsbDevice device = reader();
    EXPECT_EQ(QJsonDocument::fromJson(toJson({device})), QJsonDocument(QJsonArray{expected}));
    device.product.clear();
    expected["product"] = QJsonValue();
    EXPECT_EQ(QJsonDocument::fromJson(toJson({device})), QJsonDocument(QJsonArray{expected}));
    EXPECT_EQ(QJsonDocument::fromJson(toJson(QVector<UsbDevice>())), QJsonDocument(QJsonArray()));
}

TEST(UsbEmptyListNote, SaysWhatToLookAtInLinesThatFitATerminal)
{
    EXPECT_THAT(emptyListNote().toStdString(), HasSubstr("plugged in"));
    for (const QString &line : ("idcard-reader: " + emptyListNote()).split(QLatin1Char('\n')))
        EXPECT_LE(line.size(), 79);
}

} // namespace
