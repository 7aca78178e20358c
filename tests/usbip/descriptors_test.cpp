// Taking descriptors apart.

#include <gmock/gmock.h>

#include "simulator/usbip/usb_descriptors.h"
#include "tests/usbip/recording_device.h"

using simulator::describeDevice;
using testing::ElementsAre;

namespace
{

TEST(Descriptors, AreTakenApart)
{
    const auto description = describeDevice(RecordingDevice::plainDescriptors());
    ASSERT_TRUE(description);
    EXPECT_EQ(description->device.size(), 18);
    EXPECT_EQ(description->configuration.size(), 46);
    EXPECT_EQ(description->vendor, 0x1209);
    EXPECT_EQ(description->product, 0x0001);
    EXPECT_EQ(description->release, 0x0100);
    EXPECT_EQ(description->configurationValue, 1);
    ASSERT_EQ(description->interfaces.size(), 1U);
    EXPECT_EQ(description->interfaces[0].classCode, 0xFF);
    EXPECT_THAT(description->endpoints, ElementsAre(0x02, 0x81, 0x06, 0x85));
    EXPECT_TRUE(description->hasEndpoint(0x85));
    EXPECT_FALSE(description->hasEndpoint(0x05));
}

TEST(Descriptors, CutOffAnywhereAreRefused)
{
    const QByteArray all = RecordingDevice::plainDescriptors();
    for (int size = 0; size < all.size(); ++size)
        EXPECT_FALSE(describeDevice(all.left(size))) << size;
}

TEST(Descriptors, BytesAfterTheConfigurationAreLeftAway)
{
    const QByteArray all = RecordingDevice::plainDescriptors();
    const auto description = describeDevice(all + "more");
    ASSERT_TRUE(description);
    EXPECT_EQ(description->configuration, all.mid(18));
}

TEST(Descriptors, UnknownKindsAreSteppedOver)
{
    QByteArray all = RecordingDevice::plainDescriptors();
    all.insert(36, QByteArray::fromHex("05 24 00 00 00"));
    all[20] = static_cast<char>(all.at(20) + 5);
    ASSERT_TRUE(describeDevice(all));
    EXPECT_EQ(describeDevice(all)->endpoints.size(), 4U);
}

TEST(Descriptors, LengthsThatLieAreRefusedOrHarmless)
{
    const QByteArray all = RecordingDevice::plainDescriptors();
    for (const int place : {0, 18, 27, 36, 43, 50, 57}) { // where each descriptor says its length
        for (int length = 0; length < 256; ++length) {
            QByteArray lying = all;
            lying[place] = static_cast<char>(length);
            if (lying == all)
                continue;
            const auto description = describeDevice(lying);
            // A longer length may swallow whole descriptors, no other can be right.
            EXPECT_TRUE(!description || description->endpoints.size() < 4)
                << place << ' ' << length;
        }
    }
}

} // namespace
