#pragma once

// Failures of libusb that no device can cause, and an account of its calls. The real
// functions do everything else.

namespace usb_test
{

/** What fails from now on; 0 for nothing. */
struct LibusbFailures {
    int init = 0;               ///< result of libusb_init
    int deviceList = 0;         ///< result of libusb_get_device_list
    int descriptorPosition = 0; ///< counted from 1: the one device that cannot be described
    int autoDetach = 0;         ///< result of libusb_set_auto_detach_kernel_driver
};

/** One call that fails; the others are real. */
struct CallFailure {
    const char *function; ///< of libusb; null: none fails
    int position;         ///< among the calls of this function, counted from 1
    int code;             ///< what it returns
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
    int claimed = 0; ///< with success
    int released = 0;
};

/** Sets what fails, and begins a new account. */
void setLibusbFailures(const LibusbFailures &toSet);

const LibusbCalls &libusbCalls();

} // namespace usb_test
