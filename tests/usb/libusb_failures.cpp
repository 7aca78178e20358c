#include "tests/usb/libusb_failures.h"

#include <map>
#include <string>

#include <dlfcn.h>

#include <libusb.h>

namespace
{

usb_test::LibusbCalls calls;
usb_test::CallFailure callFailure;
std::map<std::string, int> callCounts;

template <typename Function>
Function *real(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/** What this call of `function` is to return; 0: what the real function returns. */
int failureOf(const char *function)
{
    if (callFailure.function == nullptr || std::string(function) != callFailure.function)
        return 0;
    return ++callCounts[function] == callFailure.position ? callFailure.code : 0;
}

} // namespace

void usb_test::setCallFailure(const CallFailure &toSet)
{
    calls = {};
    callFailure = toSet;
    callCounts.clear();
}

const usb_test::LibusbCalls &usb_test::libusbCalls()
{
    return calls;
}

// This program's definitions go before those of the library, also for the library under test.
extern "C" {

__attribute__((visibility("default"))) int libusb_init(libusb_context **ctx)
{
    ++calls.init;
    if (const int code = failureOf("libusb_init"); code != 0)
        return code;
    const int result = real<decltype(libusb_init)>("libusb_init")(ctx);
    calls.initialised += result == LIBUSB_SUCCESS ? 1 : 0;
    return result;
}

__attribute__((visibility("default"))) void libusb_exit(libusb_context *ctx)
{
    ++calls.exit;
    real<decltype(libusb_exit)>("libusb_exit")(ctx);
}

__attribute__((visibility("default"))) ssize_t libusb_get_device_list(libusb_context *ctx,
                                                                      libusb_device ***list)
{
    if (const int code = failureOf("libusb_get_device_list"); code != 0)
        return code;
    ++calls.lists;
    return real<decltype(libusb_get_device_list)>("libusb_get_device_list")(ctx, list);
}

__attribute__((visibility("default"))) void libusb_free_device_list(libusb_device **list,
                                                                    int unref_devices)
{
    ++calls.listsFreed;
    calls.listsFreedWithDevices += unref_devices;
    real<decltype(libusb_free_device_list)>("libusb_free_device_list")(list, unref_devices);
}

__attribute__((visibility("default"))) int
libusb_get_device_descriptor(libusb_device *device, libusb_device_descriptor *descriptor)
{
    ++calls.descriptors;
    if (const int code = failureOf("libusb_get_device_descriptor"); code != 0)
        return code;
    return real<decltype(libusb_get_device_descriptor)>("libusb_get_device_descriptor")(device,
                                                                                        descriptor);
}

__attribute__((visibility("default"))) int
libusb_set_auto_detach_kernel_driver(libusb_device_handle *handle, int enable)
{
    if (const int code = failureOf("libusb_set_auto_detach_kernel_driver"); code != 0)
        return code;
    return real<decltype(libusb_set_auto_detach_kernel_driver)>(
        "libusb_set_auto_detach_kernel_driver")(handle, enable);
}

__attribute__((visibility("default"))) int libusb_open(libusb_device *device,
                                                       libusb_device_handle **handle)
{
    if (const int code = failureOf("libusb_open"); code != 0)
        return code;
    const int result = real<decltype(libusb_open)>("libusb_open")(device, handle);
    calls.opened += result == LIBUSB_SUCCESS ? 1 : 0;
    return result;
}

__attribute__((visibility("default"))) void libusb_close(libusb_device_handle *handle)
{
    ++calls.closed;
    real<decltype(libusb_close)>("libusb_close")(handle);
}

__attribute__((visibility("default"))) int libusb_release_interface(libusb_device_handle *handle,
                                                                    int interface)
{
    ++calls.released;
    if (const int code = failureOf("libusb_release_interface"); code != 0)
        return code;
    return real<decltype(libusb_release_interface)>("libusb_release_interface")(handle, interface);
}

__attribute__((visibility("default"))) int libusb_claim_interface(libusb_device_handle *handle,
                                                                  int interface)
{
    if (const int code = failureOf("libusb_claim_interface"); code != 0)
        return code;
    return real<decltype(libusb_claim_interface)>("libusb_claim_interface")(handle, interface);
}

__attribute__((visibility("default"))) int libusb_reset_device(libusb_device_handle *handle)
{
    if (const int code = failureOf("libusb_reset_device"); code != 0)
        return code;
    return real<decltype(libusb_reset_device)>("libusb_reset_device")(handle);
}

__attribute__((visibility("default"))) int libusb_bulk_transfer(libusb_device_handle *handle,
                                                                unsigned char endpoint,
                                                                unsigned char *data, int length,
                                                                int *count, unsigned int timeout)
{
    if (const int code = failureOf("libusb_bulk_transfer"); code != 0)
        return code;
    return real<decltype(libusb_bulk_transfer)>("libusb_bulk_transfer")(handle, endpoint, data,
                                                                        length, count, timeout);
}

} // extern "C"
