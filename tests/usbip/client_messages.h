#pragma once

// A client's messages, and the server's replies taken apart. Written apart from the code under
// test: its own numbers, its own encoder.

#include <vector>

#include <QByteArray>

/** The bytes of this text: pairs of hexadecimal digits, blanks between them ignored. */
QByteArray hex(const char *digits);

QByteArray listRequest();
QByteArray importRequest(const QByteArray &busId = "1-1");

constexpr unsigned int DEVICE_ID = 0x00010002;

struct SubmitFields {
    unsigned int number = 1;
    unsigned int device = DEVICE_ID;
    bool isIn = true;
    unsigned int endpoint = 1; ///< without the direction
    unsigned int flags = 0;
    unsigned int length = 0;
    unsigned int packets = 0;
    QByteArray setup = QByteArray(8, '\0');
    QByteArray data;
};
QByteArray submit(const SubmitFields &fields);

QByteArray bulkRead(unsigned int number, unsigned int capacity, unsigned int endpoint = 1);
QByteArray bulkWrite(unsigned int number, const QByteArray &data, unsigned int endpoint = 2);
QByteArray control(unsigned int number, const QByteArray &setup);
QByteArray unlink(unsigned int number, unsigned int submitNumber);

constexpr int LIST_REPLY_SIZE = 12 + 312 + 4; ///< of one device with one interface
constexpr int IMPORT_REPLY_SIZE = 8 + 312;

/** A reply to a transfer or an unlink. */
struct Reply {
    enum Kind { Submitted = 3, Unlinked = 4 };
    unsigned int kind = 0;
    unsigned int number = 0;
    int status = 0;
    int count = 0; ///< 0 for an unlink
    QByteArray data;
};
bool operator==(const Reply &left, const Reply &right);
void PrintTo(const Reply &reply, std::ostream *stream);

/** `bytes` as whole replies; `reads` are the numbers of transfers that bring data. */
std::vector<Reply> replies(const QByteArray &bytes, const std::vector<unsigned int> &reads = {});
