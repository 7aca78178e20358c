#pragma once

#include <cstdint>

#include "common/export.h"
#include "reader/usb_codes.h"

struct libusb_context;
struct libusb_device_handle;

/**
 * Finds a card reader on the USB bus by its vendor and product id, opens it, claims interface 0 and
 * resets it, through libusb 1.0 on a context of its own. The destructor undoes exactly what was
 * done. Every event is one line in Qt's debug log; nothing is thrown.
 *
 * Opening takes the reader over from a kernel driver that is bound to it.
 *
 * An object serves one thread at a time. Two objects share nothing. A thread that is cancelled
 * (`pthread_cancel`) while it opens or closes a reader does so to the end.
 */
class IDCARD_READER_EXPORT CLibUsbEx
{
public:
    /**
     * Opens the first device with these ids. `lastError()` returns the outcome: `USB_READER_OK`, or
     * one of the codes from `USB_READER_INIT_FAILED` to `USB_READER_RESET_FAILED`.
     */
    CLibUsbEx(unsigned short vid, unsigned short pid);
    ~CLibUsbEx();
    CLibUsbEx(const CLibUsbEx &) = delete;
    CLibUsbEx &operator=(const CLibUsbEx &) = delete;

    /**
     * Opens, claims and resets the first device with these ids; what the object had opened before
     * is released first. Returns whether all of it succeeded. `lastError()` returns a failure; a
     * success does not clear the code of an earlier failure. Without a libusb context
     * (`USB_READER_INIT_FAILED`) it only returns false.
     */
    bool open(unsigned short vid, unsigned short pid);

    /**
     * Opens the first device of `ctx` with these ids and returns its handle, which the caller
     * closes with `libusb_close`. Returns null and sets `lastError()` when there is none or it
     * cannot be opened.
     */
    libusb_device_handle *
    libusb_open_device_with_vid_pid_ex(libusb_context *ctx, unsigned short vid, unsigned short pid);

    /** 0, or the `USB_READER_CODE` of the last failure. */
    int lastError() const { return m_lastError; }

protected:
    /** What there is to release. */
    enum State : std::int32_t {
        NOTHING_MADE = -1,
        CONTEXT_MADE = 0,
        DEVICE_OPEN = 1,
        INTERFACE_CLAIMED = 2,
    };

    libusb_context *m_context = nullptr; ///< owned
    std::uint32_t m_productId;           ///< 16 significant bits
    std::uint32_t m_vendorId;            ///< 16 significant bits
    /** Owned. Null, too, in state `DEVICE_OPEN` after a claim or a reset that failed. */
    libusb_device_handle *m_handle = nullptr;
    std::int32_t m_lastError = USB_READER_OK; ///< a `USB_READER_CODE`
    State m_state = NOTHING_MADE;             ///< what the destructor has to release

private:
    friend struct UsbReaderLayout;

    IDCARD_READER_HIDDEN void closeAfter(const char *failure, int usbResult, USB_READER_CODE code);
    IDCARD_READER_HIDDEN void releaseDevice();
};
