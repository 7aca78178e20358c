// The two operations that take a size, with the sizes there are: they ask for exactly their block,
// send exactly what belongs into it, and read and write nothing beside it.

#include <algorithm>
#include <cstring>
#include <vector>

#include <gmock/gmock.h>

#include "tests/iddata/guarded_bytes.h"
#include "tests/usb/exposed_reader.h"
#include "tests/usb/usb_test.h"

namespace
{

using namespace usb_test;
using simulator::UsbTransfer;

constexpr int LARGEST = 65535;
constexpr unsigned char FIRST = 0xF1;
constexpr unsigned char SECOND = 0xF2;
constexpr unsigned char LAST = 0xF3;

/** Takes and gives blocks, and remembers the last one. */
class BlockDevice : public ScriptedDevice
{
public:
    UsbTransfer write(std::uint8_t endpoint, const QByteArray &bytes) override
    {
        if (endpoint != 0x06)
            return ScriptedDevice::write(endpoint, bytes);
        m_block = bytes;
        UsbTransfer taken;
        taken.count = bytes.size();
        return taken;
    }

    UsbTransfer read(std::uint8_t endpoint, int capacity) override
    {
        if (endpoint != 0x85)
            return ScriptedDevice::read(endpoint, capacity);
        m_capacity = capacity;
        UsbTransfer answer;
        answer.data = QByteArray(qMax(0, capacity - m_missing), '\x5A');
        return answer;
    }

    void setMissing(int bytes) { m_missing = bytes; }
    const QByteArray &block() const { return m_block; }
    int capacity() const { return m_capacity; }

private:
    QByteArray m_block;
    int m_capacity = -1;
    int m_missing = 0;
};

/** The block of `size` bytes; what does not fit is left out, from its end on. */
QByteArray expectedBlock(int size, const unsigned char *data)
{
    QByteArray block(size, '\0');
    if (size > 5)
        std::memcpy(block.data() + 2, data, static_cast<std::size_t>(size - 5));
    if (size > 1)
        block[1] = static_cast<char>(SECOND);
    if (size > 0) {
        block[0] = static_cast<char>(FIRST);
        block[size - 1] = static_cast<char>(LAST);
    }
    return block;
}

/**
 * The size to try after `size`: the next one, if IDCARD_TEST_EVERY_SIZE is set. Else a choice of
 * them: all small ones, those around the ends of packets, and the largest.
 */
int next(int size)
{
    constexpr int SMALL = 530;
    constexpr int PACKET = 512;
    static const bool isEverySize = qEnvironmentVariableIsSet("IDCARD_TEST_EVERY_SIZE");
    do
        ++size;
    while (!isEverySize && size > SMALL && size < LARGEST - 10 && (size + 2) % (4 * PACKET) > 4);
    return size;
}

class BlockSizes : public UsbTest
{
protected:
    BlockSizes() : m_device(make<BlockDevice>())
    {
        expectReady(m_device);
        add(m_device);
    }

    BlockDevice &device() { return m_device; }

private:
    BlockDevice &m_device;
};

TEST_F(BlockSizes, WritePipe6_SendsExactlyTheBlock)
{
    GuardedBytes data(LARGEST, GuardedBytes::GUARD_AFTER);
    for (std::size_t i = 0; i < data.size(); ++i)
        data.data()[i] = static_cast<unsigned char>(1 + i % 251);
    const std::vector<unsigned char> before(data.begin(), data.end());
    IdReader reader;
    for (int size = 0; size <= LARGEST; size = next(size)) {
        unsigned char *const used = data.end() - qMax(0, size - 5);
        ASSERT_TRUE(
            reader.write_pipe6(static_cast<unsigned short>(size), FIRST, SECOND, used, LAST))
            << size;
        ASSERT_EQ(device().block(), expectedBlock(size, used)) << size;
    }
    EXPECT_TRUE(std::equal(before.begin(), before.end(), data.begin())) << "it is only read";
    takeLog(); // a line for each
}

TEST_F(BlockSizes, ReadPipe85_AsksForExactlyTheBlock)
{
    IdReader reader;
    device().setMissing(1); // a whole one logs every byte
    for (int size = 1; size <= LARGEST; size = next(size)) {
        ASSERT_FALSE(reader.read_pipe85(static_cast<unsigned short>(size))) << size;
        ASSERT_EQ(device().capacity(), size);
    }
    takeLog();
}

TEST_F(BlockSizes, ReadPipe85OfTheLargestBlock_LogsEveryByte)
{
    IdReader reader;
    EXPECT_TRUE(reader.read_pipe85(LARGEST));
    Lines expected = lines::READY + Lines{"write pipe85 success!"};
    for (int i = 0; i < LARGEST; ++i)
        expected.push_back("pipe85_data[" + std::to_string(i) + "]=0x5A");
    expectLog(expected);
}

TEST_F(BlockSizes, ReadPipe85OfSmallAndOddBlocks_TakesThemWhole)
{
    IdReader reader;
    for (const int size : {0, 1, 2, 7, 511, 512, 513, 4095, 4096, 4097, 16383, 16384, 16385, 65534})
        EXPECT_TRUE(reader.read_pipe85(static_cast<unsigned short>(size))) << size;
    takeLog();
}

} // namespace
