#pragma once

// Numbers of the USB standard (chapter 9 of USB 2.0) that descriptors and control requests share.

#include <cstdint>

namespace simulator
{

constexpr std::uint8_t USB_DESCRIPTOR_DEVICE = 1;
constexpr std::uint8_t USB_DESCRIPTOR_CONFIGURATION = 2;
constexpr std::uint8_t USB_DESCRIPTOR_INTERFACE = 4;
constexpr std::uint8_t USB_DESCRIPTOR_ENDPOINT = 5;

constexpr int USB_DEVICE_DESCRIPTOR_SIZE = 18;

constexpr std::uint8_t USB_ENDPOINT_IN = 0x80;

} // namespace simulator
