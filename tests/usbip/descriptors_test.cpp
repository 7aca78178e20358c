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
    EXPECT_EQ(description.device.size(), 18);
    EXPECT_EQ(description.configuration.size(), 46);
    EXPECT_EQ(description.vendor, 0x1209);
    EXPECT_EQ(description.product, 0x0001);
    EXPECT_EQ(description.release, 0x0100);
    EXPECT_EQ(description.configurationValue, 1);
    ASSERT_EQ(description.interfaces.size(), 1U);
    EXPECT_EQ(description.interfaces[0].classCode, 0xFF);
    EXPECT_THAT(description.endpoints, ElementsAre(0x02, 0x81, 0x06, 0x85));
    EXPECT_TRUE(description.hasEndpoint(0x85));
    EXPECT_FALSE(description.hasEndpoint(0x05));
}

} // namespace
