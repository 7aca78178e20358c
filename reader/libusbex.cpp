#include "reader/libusbex.h"

#include <cstddef>

#include <libusb.h>

#include "common/cancellation.h"
#include "common/debug_log.h"

namespace
{

constexpr int CARD_INTERFACE = 0;

/** Opens `device`, which the search has found; null and a code in `lastError` when it cannot be. */
libusb_device_handle *openFound(libusb_device *device, std::int32_t *lastError)
{
    debugLine("found usb device!");
    libusb_device_handle *handle = nullptr;
    const int result = libusb_open(device, &handle);
    if (result == LIBUSB_SUCCESS)
        return handle;
    const char *const name = libusb_error_name(result);
    debugLine("failed to open device %s   %d", name, result);
    debugLine("failed to open device: %s(%d)", name, result);
    *lastError = result == LIBUSB_ERROR_ACCESS ? USB_READER_NO_PERMISSION : USB_READER_OPEN_FAILED;
    return nullptr;
}

/** The first device of the list with these ids; null and a code in `lastError` when none is. */
libusb_device *findDevice(libusb_device *const *list, unsigned short vid, unsigned short pid,
                          std::int32_t *lastError)
{
    for (int i = 0; list[i] != nullptr; ++i) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(list[i], &descriptor) != LIBUSB_SUCCESS) {
            debugLine("libusb_get_device_descriptor(%d) fail!", i + 1);
            *lastError = USB_READER_NO_DESCRIPTOR;
            return nullptr;
        }
        if (descriptor.idVendor == vid && descriptor.idProduct == pid)
            return list[i];
    }
    *lastError = USB_READER_NOT_FOUND;
    return nullptr;
}

} // namespace

/** Hosts were built against this layout. */
struct UsbReaderLayout {
    static_assert(sizeof(void *) != 8 || sizeof(CLibUsbEx) == 32);
    static_assert(offsetof(CLibUsbEx, m_context) == 0);
    static_assert(sizeof(void *) != 8 || offsetof(CLibUsbEx, m_productId) == 8);
    static_assert(sizeof(void *) != 8 || offsetof(CLibUsbEx, m_vendorId) == 12);
    static_assert(sizeof(void *) != 8 || offsetof(CLibUsbEx, m_handle) == 16);
    static_assert(sizeof(void *) != 8 || offsetof(CLibUsbEx, m_lastError) == 24);
    static_assert(sizeof(void *) != 8 || offsetof(CLibUsbEx, m_state) == 28);
};

// libusb has locks of its own taken while it opens and closes, so that no thread is unwound there.

CLibUsbEx::CLibUsbEx(unsigned short vid, unsigned short pid) : m_productId(pid), m_vendorId(vid)
{
    const CancellationHold hold;
    const int result = libusb_init(&m_context);
    if (result < 0) {
        debugLine("libusb_init() failed: %s", libusb_error_name(result));
        m_context = nullptr;
        m_lastError = USB_READER_INIT_FAILED;
        return;
    }
    m_state = CONTEXT_MADE;
    if (open(vid, pid))
        m_lastError = USB_READER_OK;
    else
        debugLine("open usb failed!");
}

CLibUsbEx::~CLibUsbEx()
{
    const CancellationHold hold;
    releaseDevice();
    if (m_state == CONTEXT_MADE)
        libusb_exit(m_context);
}

libusb_device_handle *CLibUsbEx::libusb_open_device_with_vid_pid_ex(libusb_context *ctx,
                                                                    unsigned short vid,
                                                                    unsigned short pid)
{
    const CancellationHold hold;
    libusb_device **list = nullptr;
    if (libusb_get_device_list(ctx, &list) < 0) {
        debugLine("libusb_get_device_list fail!");
        m_lastError = USB_READER_NO_DEVICE_LIST;
        return nullptr;
    }
    libusb_device *const device = findDevice(list, vid, pid, &m_lastError);
    libusb_device_handle *const handle =
        device == nullptr ? nullptr : openFound(device, &m_lastError);
    libusb_free_device_list(list, 1);
    return handle;
}

bool CLibUsbEx::open(unsigned short vid, unsigned short pid)
{
    const CancellationHold hold;
    releaseDevice();
    if (m_state == CONTEXT_MADE)
        m_handle = libusb_open_device_with_vid_pid_ex(m_context, vid, pid);
    if (m_handle == nullptr) {
        debugLine("libusb_open_device_with_vid_pid() failed");
        return false;
    }
    m_state = DEVICE_OPEN;
    libusb_set_auto_detach_kernel_driver(m_handle, 1);
    int result = libusb_claim_interface(m_handle, CARD_INTERFACE);
    if (result != LIBUSB_SUCCESS) {
        closeAfter("libusb_claim_interface", result, USB_READER_CLAIM_FAILED);
        return false;
    }
    result = libusb_reset_device(m_handle);
    if (result != LIBUSB_SUCCESS) {
        closeAfter("libusb_reset_device", result, USB_READER_RESET_FAILED);
        return false;
    }
    debugLine("open usb device success!");
    m_state = INTERFACE_CLAIMED;
    return true;
}

/** Gives the device up in state `DEVICE_OPEN`, which stays: the destructor has only a context. */
void CLibUsbEx::closeAfter(const char *failure, int usbResult, USB_READER_CODE code)
{
    libusb_close(m_handle);
    m_handle = nullptr;
    debugLine("%s failed: %s", failure, libusb_error_name(usbResult));
    m_lastError = code;
}

/** Undoes what `open` did, as far as it got. */
void CLibUsbEx::releaseDevice()
{
    if (m_state == INTERFACE_CLAIMED) {
        libusb_release_interface(m_handle, CARD_INTERFACE);
        m_state = DEVICE_OPEN;
    }
    if (m_state == DEVICE_OPEN) {
        if (m_handle != nullptr)
            libusb_close(m_handle);
        m_handle = nullptr;
        m_state = CONTEXT_MADE;
    }
}
