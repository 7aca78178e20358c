// Linked with a program that reads over USB, together with the scripted libusb: before the program
// begins, a reader with the resident card of the kept records is on its bus.

#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/scripted_libusb.h"

namespace
{

std::vector<std::uint8_t> &script()
{
    static std::vector<std::uint8_t> bytes;
    return bytes;
}

[[gnu::constructor]] void putTheCard()
{
    std::ifstream file(IDCARD_SOURCE_DIR "/tests/iddata/golden/resident.bin", std::ios::binary);
    script().assign(1, scripted_libusb::ANSWERED_UNTIL_READ);
    script().insert(script().end(), std::istreambuf_iterator<char>(file), {});
    scripted_libusb::begin(script().data(), script().size());
}

} // namespace
