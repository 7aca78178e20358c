#pragma once

// Failures of libusb that no device can cause, and an account of its calls. The real
// functions do everything else.

namespace usb_test
{

/** One call that fails; the others are real. */
struct CallFailure {
    const char *function = nullptr; ///< of libusb; null: none fails
    int position = 0;               ///< among the calls of this function, counted from 1
    int code = 0;                   ///< what it returns
};

/** Sets the call that fails, begins counting, and begins a new account. */
void setCallFailure(const CallFailure &toSet);

/** Calls since the failures were set. */
struct LibusbCalls {
    int init = 0;
    int initialised = 0; ///< with success
    int exit = 0;
    int lists = 0;
    int listsFreed = 0;
    int listsFreedWithDevices = 0;
    int descriptors = 0;
    int opened = 0; ///< with success
    int closed = 0;
    int released = 0;
};

const LibusbCalls &libusbCalls();

} // namespace usb_test
