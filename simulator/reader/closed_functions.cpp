// What libidcard_simulator.so exports: the five closed functions and the simulator's own four,
// all answered by one simulated reader that lives as long as the library is loaded.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>

#include <QFile>

#include "common/card_records.h"
#include "common/closed_functions.h"
#include "simulator/card/photo_codec.h"
#include "simulator/reader/vendor_reader.h"
#include "simulator/simulator.h"

namespace
{

constexpr int DONE = 0;
constexpr int REFUSED = -1;
constexpr int NOT_DECODED = 0;

simulator::VendorReader &reader()
{
    static simulator::VendorReader instance;
    return instance;
}

// No exception may pass a C function; the only one to be expected is that memory ran out.
template <typename Function>
int guarded(int failure, Function function)
{
    try {
        return function();
    } catch (const std::exception &) {
        return failure;
    }
}

// `text` as UTF-8, cut at a whole character when it does not fit.
void giveMessage(const QString &text, char *message, unsigned int messageSize)
{
    if (message == nullptr || messageSize == 0)
        return;
    const QByteArray bytes = text.toUtf8();
    int length =
        static_cast<int>(std::min(static_cast<unsigned int>(bytes.size()), messageSize - 1));
    const auto isContinuation = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    while (length > 0 && length < bytes.size() && isContinuation(bytes.at(length)))
        --length;
    std::memcpy(message, bytes.constData(), static_cast<std::size_t>(length));
    message[length] = '\0';
}

int openPort(int port)
{
    QString problem;
    const int result = reader().open(port, &problem);
    if (!problem.isEmpty())
        std::fprintf(stderr, "idcard_simulator: %s\n", problem.toLocal8Bit().constData());
    return result;
}

int decode(const unsigned char *src, unsigned char *dst, int mode)
{
    if (src == nullptr || dst == nullptr || (mode != WLT_MODE_BMP_FILE && mode != WLT_MODE_PIXELS))
        return NOT_DECODED;
    const auto data = QByteArray(reinterpret_cast<const char *>(src),
                                 static_cast<int>(IDCARD_COMPRESSED_PHOTO_SIZE));
    const QByteArray file = simulator::decompressPhoto(data);
    if (file.isEmpty())
        return NOT_DECODED;
    const QByteArray bytes = mode == WLT_MODE_BMP_FILE ? file : simulator::pixelRows(file);
    std::memcpy(dst, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return WLT_SUCCESS;
}

int putCard(const char *card, simulator::PutAs as, char *message, unsigned int messageSize)
{
    return guarded(REFUSED, [&] {
        QString problem;
        if (reader().slot().putCard(QFile::decodeName(card), as, &problem))
            return DONE;
        giveMessage(problem, message, messageSize);
        return REFUSED;
    });
}

} // namespace

int KVO_OpenPort(int port)
{
    return guarded(simulator::VENDOR_SIMULATOR_FAILED, [&] { return openPort(port); });
}

int KVO_FindIDCard(int port)
{
    return guarded(simulator::VENDOR_SIMULATOR_FAILED, [&] { return reader().find(port); });
}

int KVO_ReadIDCard(int port, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                   unsigned char *fp, unsigned int *fpLen, int flag)
{
    return guarded(simulator::VENDOR_SIMULATOR_FAILED, [&] {
        return reader().read(port, {info, photo, photoLen, fp, fpLen}, flag);
    });
}

int KVO_ClosePort(int port)
{
    return guarded(simulator::VENDOR_SIMULATOR_FAILED, [&] { return reader().close(port); });
}

int unpack(unsigned char *src, unsigned char *dst, int mode)
{
    return guarded(NOT_DECODED, [&] { return decode(src, dst, mode); });
}

int idcard_simulator_put_card(const char *card, char *message, unsigned int messageSize)
{
    return putCard(card, simulator::PutAs::DESCRIBED, message, messageSize);
}

int idcard_simulator_put_plain_card(const char *card, char *message, unsigned int messageSize)
{
    return putCard(card, simulator::PutAs::PLAIN, message, messageSize);
}

void idcard_simulator_take_card()
{
    reader().slot().takeCard();
}

int idcard_simulator_set_faults(const char *faults, char *message, unsigned int messageSize)
{
    return guarded(REFUSED, [&] {
        QString problem;
        if (reader().slot().setFaults(QString::fromUtf8(faults), &problem))
            return DONE;
        giveMessage(problem, message, messageSize);
        return REFUSED;
    });
}
