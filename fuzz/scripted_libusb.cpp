#include "fuzz/scripted_libusb.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <libusb.h>

#include "fuzz/fuzz_target.h"
#include "reader/reader_frames.h"

struct libusb_context {
};
struct libusb_device {
};
struct libusb_device_handle {
};

namespace
{

/** What a step of opening the device answers; one bit of the first byte each. */
enum FailingStep : std::uint8_t {
    FAILS_INIT = 0x01,
    FAILS_LIST = 0x02,
    FAILS_DESCRIPTOR = 0x04,
    FAILS_OPEN = 0x08,
    FAILS_CLAIM = 0x10,
    FAILS_RESET = 0x20,
    IS_ANOTHER = 0x40, ///< the device has other ids
};

struct Script {
    const std::uint8_t *data = nullptr;
    std::size_t left = 0;
    std::uint8_t failing = 0;
    int fixedAnswers = 0; ///< lookup and select that are still to be answered with a card
    bool restIsReadAnswer = false;
};

Script script;
libusb_context context;
libusb_device device;
libusb_device_handle handle;
std::array<libusb_device *, 2> deviceList = {&device, nullptr};
int contexts = 0;
int lists = 0;
int handles = 0;
int claims = 0;

bool fails(FailingStep step)
{
    return (script.failing & step) != 0;
}

std::uint8_t nextByte()
{
    if (script.left == 0)
        return 0;
    --script.left;
    return *script.data++;
}

/** At most `room` of the next bytes of the script; returns how many. */
int take(unsigned char *data, int room)
{
    const std::size_t count = std::min(static_cast<std::size_t>(room), script.left);
    std::copy_n(script.data, count, data);
    script.data += count;
    script.left -= count;
    return static_cast<int>(count);
}

template <typename Frame>
int answer(const Frame &frame, unsigned char *data, int room)
{
    const int count = std::min(room, static_cast<int>(frame.size()));
    std::copy_n(frame.begin(), count, data);
    return count;
}

/** The fixed part of a script with `ANSWERED_UNTIL_READ`. */
int fixedTransfer(bool isRead, unsigned char *data, int size)
{
    if (!isRead)
        return size;
    if (script.fixedAnswers == 0)
        return take(data, size);
    --script.fixedAnswers;
    return script.fixedAnswers == 1 ? answer(reader_frames::LOOKUP_ANSWER, data, size)
                                    : answer(reader_frames::SELECT_ANSWER, data, size);
}

constexpr std::array<int, 8> TRANSFER_RESULTS = {
    LIBUSB_SUCCESS,       LIBUSB_SUCCESS,    LIBUSB_SUCCESS,        LIBUSB_SUCCESS,
    LIBUSB_ERROR_TIMEOUT, LIBUSB_ERROR_PIPE, LIBUSB_ERROR_OVERFLOW, LIBUSB_ERROR_NO_DEVICE};

} // namespace

void scripted_libusb::begin(const std::uint8_t *data, std::size_t size)
{
    script = Script{data, size};
    const std::uint8_t first = nextByte();
    script.restIsReadAnswer = (first & ANSWERED_UNTIL_READ) != 0;
    if (script.restIsReadAnswer)
        script.fixedAnswers = 2;
    else
        script.failing = first;
}

bool scripted_libusb::isAllGivenBack()
{
    return contexts == 0 && lists == 0 && handles == 0 && claims == 0;
}

int LIBUSB_CALL libusb_init(libusb_context **ctx)
{
    if (fails(FAILS_INIT))
        return LIBUSB_ERROR_NO_MEM;
    ++contexts;
    *ctx = &context;
    return LIBUSB_SUCCESS;
}

void LIBUSB_CALL libusb_exit(libusb_context *ctx)
{
    demand(ctx == &context);
    --contexts;
}

ssize_t LIBUSB_CALL libusb_get_device_list(libusb_context *ctx, libusb_device ***list)
{
    demand(ctx == &context);
    if (fails(FAILS_LIST))
        return LIBUSB_ERROR_NO_MEM;
    ++lists;
    *list = deviceList.data();
    return 1;
}

void LIBUSB_CALL libusb_free_device_list(libusb_device **list, int unref_devices)
{
    demand(list == deviceList.data() && unref_devices == 1);
    --lists;
}

int LIBUSB_CALL libusb_get_device_descriptor(libusb_device *, libusb_device_descriptor *descriptor)
{
    *descriptor = {};
    descriptor->idVendor = fails(IS_ANOTHER) ? 1 : 0;
    return fails(FAILS_DESCRIPTOR) ? LIBUSB_ERROR_IO : LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_open(libusb_device *, libusb_device_handle **dev_handle)
{
    if (fails(FAILS_OPEN))
        return LIBUSB_ERROR_ACCESS;
    ++handles;
    *dev_handle = &handle;
    return LIBUSB_SUCCESS;
}

void LIBUSB_CALL libusb_close(libusb_device_handle *dev_handle)
{
    demand(dev_handle == &handle && handles > 0);
    --handles;
    claims = 0; // the kernel does not keep the claim of a node that is closed
}

int LIBUSB_CALL libusb_set_auto_detach_kernel_driver(libusb_device_handle *, int)
{
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_claim_interface(libusb_device_handle *, int)
{
    if (fails(FAILS_CLAIM))
        return LIBUSB_ERROR_BUSY;
    ++claims;
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_release_interface(libusb_device_handle *dev_handle, int)
{
    demand(dev_handle == &handle && claims > 0);
    --claims;
    return LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_reset_device(libusb_device_handle *)
{
    return fails(FAILS_RESET) ? LIBUSB_ERROR_NOT_FOUND : LIBUSB_SUCCESS;
}

int LIBUSB_CALL libusb_bulk_transfer(libusb_device_handle *dev_handle, unsigned char endpoint,
                                     unsigned char *data, int length, int *actual_length,
                                     unsigned int)
{
    demand(dev_handle == &handle && length >= 0);
    const bool isRead = (endpoint & LIBUSB_ENDPOINT_IN) != 0;
    if (script.restIsReadAnswer) {
        *actual_length = fixedTransfer(isRead, data, length);
        return LIBUSB_SUCCESS;
    }
    if (script.left == 0) {
        *actual_length = 0;
        return LIBUSB_ERROR_TIMEOUT;
    }
    const int result = TRANSFER_RESULTS.at(nextByte() % TRANSFER_RESULTS.size());
    const int high = nextByte();
    const int count = std::min(length, high * 256 + nextByte());
    *actual_length = isRead ? take(data, count) : count;
    return result;
}

const char *LIBUSB_CALL libusb_error_name(int)
{
    return "LIBUSB_ERROR";
}
