// Which reader is meant when none is named.

#include <gmock/gmock.h>

#include "apps/reading/reader_choice.h"
#include "reader/usb_codes.h"

using namespace app;
using testing::AllOf;
using testing::HasSubstr;

namespace
{

UsbDevice device(unsigned short product, bool hasReaderPipes)
{
    UsbDevice device;
    device.ids = {0x1209, product};
    device.hasReaderPipes = hasReaderPipes;
    device.node = QStringLiteral("/dev/bus/usb/001/%1").arg(product, 3, 10, QLatin1Char('0'));
    return device;
}

ReaderChoice choiceAmong(const QVector<UsbDevice> &devices)
{
    return onlyReaderIn({USB_READER_OK, devices});
}

TEST(ReaderChoice, IsTheOneDeviceWithAReadersPipes)
{
    const ReaderChoice choice = choiceAmong({device(1, false), device(2, true), device(3, false)});
    ASSERT_TRUE(choice.ids);
    EXPECT_EQ(toText(*choice.ids), "1209:0002");
    EXPECT_FALSE(choice.failure);
}

TEST(ReaderChoice, PassesOverWhatAKernelDriverHolds)
{
    UsbDevice stick = device(1, true);
    stick.driver = QStringLiteral("usb-storage");
    UsbDevice inUse = device(2, true);
    inUse.driver = QStringLiteral("usbfs");
    const ReaderChoice choice = choiceAmong({stick, inUse});
    ASSERT_TRUE(choice.ids);
    EXPECT_EQ(toText(*choice.ids), "1209:0002");
    EXPECT_EQ(choiceAmong({stick}).failure->name, "USB_READER_NOT_FOUND");
}

TEST(ReaderChoice, OfNoneIsTheFailureOfAMissingReader)
{
    for (const QVector<UsbDevice> &devices : {QVector<UsbDevice>(), {device(1, false)}}) {
        const ReaderChoice choice = choiceAmong(devices);
        EXPECT_FALSE(choice.ids);
        ASSERT_TRUE(choice.failure);
        EXPECT_EQ(choice.failure->name, "USB_READER_NOT_FOUND");
        EXPECT_EQ(choice.failure->exitStatus, ExitStatus::READER_NOT_OPENED);
    }
}

TEST(ReaderChoice, OfSeveralIsRefusedWithTheirIdsAndNodes)
{
    const ReaderChoice choice = choiceAmong({device(1, true), device(2, false), device(3, true)});
    EXPECT_FALSE(choice.ids);
    ASSERT_TRUE(choice.failure);
    EXPECT_EQ(choice.failure->exitStatus, ExitStatus::WRONG_USAGE);
    EXPECT_THAT(choice.failure->words.toStdString(),
                AllOf(HasSubstr("1209:0001 at /dev/bus/usb/001/001, 1209:0003 at /dev/bus/"),
                      HasSubstr("--device"), testing::Not(HasSubstr("0002"))));
}

TEST(ReaderChoice, OfTwoAlikeIsRefusedWithTheAdviceToUnplugOne)
{
    const ReaderChoice choice = choiceAmong({device(1, true), device(1, true)});
    ASSERT_TRUE(choice.failure);
    EXPECT_EQ(choice.failure->name, "TOOL_SEVERAL_READERS");
    EXPECT_THAT(choice.failure->words.toStdString(), HasSubstr("Unplug all but one"));
    EXPECT_EQ(choice.failure->remedy, "Unplug all readers but one.");
    const ReaderChoice three = choiceAmong({device(1, true), device(1, true), device(2, true)});
    EXPECT_THAT(three.failure->remedy.toStdString(), HasSubstr("--device"));
}

TEST(ReaderChoice, WithoutAListIsTheFailureOfTheList)
{
    for (const int code : {USB_READER_INIT_FAILED, USB_READER_NO_DEVICE_LIST}) {
        const ReaderChoice choice = onlyReaderIn({code, {}});
        EXPECT_FALSE(choice.ids);
        ASSERT_TRUE(choice.failure);
        EXPECT_EQ(choice.failure->code, code);
    }
}

} // namespace
