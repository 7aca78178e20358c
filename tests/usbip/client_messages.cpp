#include "tests/usbip/client_messages.h"

#include <algorithm>
#include <tuple>

#include <gtest/gtest.h>

namespace
{

QByteArray number(unsigned int value)
{
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(static_cast<char>(value >> shift & 0xFF));
    return bytes;
}

unsigned int numberAt(const QByteArray &bytes, int offset)
{
    unsigned int value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes.at(offset + i));
    return value;
}

} // namespace

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

QByteArray listRequest()
{
    return hex("01 11 80 05 00 00 00 00");
}

QByteArray importRequest(const QByteArray &busId)
{
    return hex("01 11 80 03 00 00 00 00") + busId + QByteArray(32 - busId.size(), '\0');
}

QByteArray submit(const SubmitFields &fields)
{
    return number(1) + number(fields.number) + number(fields.device) + number(fields.isIn ? 1 : 0) +
           number(fields.endpoint) + number(fields.flags) + number(fields.length) + number(0) +
           number(fields.packets) + number(0) + fields.setup + fields.data;
}

QByteArray bulkRead(unsigned int number, unsigned int capacity, unsigned int endpoint)
{
    SubmitFields fields;
    fields.number = number;
    fields.endpoint = endpoint;
    fields.length = capacity;
    return submit(fields);
}

QByteArray bulkWrite(unsigned int number, const QByteArray &data, unsigned int endpoint)
{
    SubmitFields fields;
    fields.number = number;
    fields.isIn = false;
    fields.endpoint = endpoint;
    fields.length = static_cast<unsigned int>(data.size());
    fields.data = data;
    return submit(fields);
}

QByteArray control(unsigned int number, const QByteArray &setup)
{
    SubmitFields fields;
    fields.number = number;
    fields.endpoint = 0;
    fields.isIn = (setup.at(0) & 0x80) != 0;
    fields.length =
        static_cast<unsigned char>(setup.at(6)) + 256U * static_cast<unsigned char>(setup.at(7));
    fields.setup = setup;
    return submit(fields);
}

QByteArray unlink(unsigned int number, unsigned int submitNumber)
{
    return ::number(2) + ::number(number) + ::number(DEVICE_ID) + ::number(0) + ::number(0) +
           ::number(submitNumber) + QByteArray(24, '\0');
}

bool operator==(const Reply &left, const Reply &right)
{
    return std::tie(left.kind, left.number, left.status, left.count, left.data) ==
           std::tie(right.kind, right.number, right.status, right.count, right.data);
}

void PrintTo(const Reply &reply, std::ostream *stream)
{
    *stream << (reply.kind == Reply::Submitted ? "submit" : "unlink") << " number " << reply.number
            << " status " << reply.status << " count " << reply.count << " data "
            << reply.data.toHex(' ').toStdString();
}

std::vector<Reply> replies(const QByteArray &bytes, const std::vector<unsigned int> &reads)
{
    constexpr int HEADER_SIZE = 48;
    std::vector<Reply> found;
    int offset = 0;
    while (offset + HEADER_SIZE <= bytes.size()) {
        Reply reply;
        reply.kind = numberAt(bytes, offset);
        reply.number = numberAt(bytes, offset + 4);
        reply.status = static_cast<int>(numberAt(bytes, offset + 20));
        const bool isRead = std::find(reads.begin(), reads.end(), reply.number) != reads.end();
        if (reply.kind == Reply::Submitted)
            reply.count = static_cast<int>(numberAt(bytes, offset + 24));
        offset += HEADER_SIZE;
        if (reply.kind == Reply::Submitted && isRead) {
            reply.data = bytes.mid(offset, reply.count);
            offset += reply.count;
        }
        found.push_back(reply);
    }
    EXPECT_EQ(offset, bytes.size()) << "a reply is cut off";
    return found;
}
