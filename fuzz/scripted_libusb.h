#pragma once

// A libusb that has one device and answers what an input says. It replaces the real one, whose
// every transfer costs system calls, in the target that reads answers by the million.

#include <cstddef>
#include <cstdint>

namespace scripted_libusb
{

/**
 * Begins a script. The device is there and can be used unless the first byte says otherwise; then
 * come the transfers, each a byte that chooses the result, two bytes with the number of bytes that
 * are moved and, for a read, these bytes. A transfer beyond the end times out.
 *
 * With `ANSWERED_UNTIL_READ` in the first byte, lookup and select are answered as by a reader with
 * a card, and all the rest is the answer of read.
 */
void begin(const std::uint8_t *data, std::size_t size);

constexpr std::uint8_t ANSWERED_UNTIL_READ = 0x80;

/** Whether everything that was opened, claimed, listed or set up has been released. */
bool isAllGivenBack();

} // namespace scripted_libusb
