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

/** The call's failure, or what the real function returns. */
template <typename Function, typename... Arguments>
auto failOrCall(const char *function, Arguments... arguments)
    -> decltype(real<Function>(function)(arguments...))
{
    const int code = failureOf(function);
    return code != 0 ? code : real<Function>(function)(arguments...);
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

#define EXPORTED __attribute__((visibility("default")))

// This program's definitions go before those of the library, also for the library under test.
extern "C" {

EXPORTED int libusb_init(libusb_context **ctx)
{
    ++calls.init;
    const int result = failOrCall<decltype(libusb_init)>("libusb_init", ctx);
    calls.initialised += result == LIBUSB_SUCCESS ? 1 : 0;
    return result;
}

EXPORTED void libusb_exit(libusb_context *ctx)
{
    ++calls.exit;
    real<decltype(libusb_exit)>("libusb_exit")(ctx);
}

EXPORTED ssize_t libusb_get_device_list(libusb_context *ctx, libusb_device ***list)
{
    const ssize_t count =
        failOrCall<decltype(libusb_get_device_list)>("libusb_get_device_list", ctx, list);
    calls.lists += count >= 0 ? 1 : 0;
    return count;
}

EXPORTED void libusb_free_device_list(libusb_device **list, int unref_devices)
{
    ++calls.listsFreed;
    calls.listsFreedWithDevices += unref_devices;
    real<decltype(libusb_free_device_list)>("libusb_free_device_list")(list, unref_devices);
}

EXPORTED int libusb_get_device_descriptor(libusb_device *device,
                                          libusb_device_descriptor *descriptor)
{
    ++calls.descriptors;
    return failOrCall<decltype(libusb_get_device_descriptor)>("libusb_get_device_descriptor",
                                                              device, descriptor);
}

EXPORTED int libusb_set_auto_detach_kernel_driver(libusb_device_handle *handle, int enable)
{
    return failOrCall<decltype(libusb_set_auto_detach_kernel_driver)>(
        "libusb_set_auto_detach_kernel_driver", handle, enable);
}

EXPORTED int libusb_open(libusb_device *device, libusb_device_handle **handle)
{
    const int result = failOrCall<decltype(libusb_open)>("libusb_open", device, handle);
    calls.opened += result == LIBUSB_SUCCESS ? 1 : 0;
    return result;
}

EXPORTED void libusb_close(libusb_device_handle *handle)
{
    ++calls.closed;
    real<decltype(libusb_close)>("libusb_close")(handle);
}

EXPORTED int libusb_release_interface(libusb_device_handle *handle, int interface)
{
    ++calls.released;
    return failOrCall<decltype(libusb_release_interface)>("libusb_release_interface", handle,
                                                          interface);
}

EXPORTED int libusb_claim_interface(libusb_device_handle *handle, int interface)
{
    return failOrCall<decltype(libusb_claim_interface)>("libusb_claim_interface", handle,
                                                        interface);
}

EXPORTED int libusb_reset_device(libusb_device_handle *handle)
{
    return failOrCall<decltype(libusb_reset_device)>("libusb_reset_device", handle);
}

EXPORTED int libusb_bulk_transfer(libusb_device_handle *handle, unsigned char endpoint,
                                  unsigned char *data, int length, int *count, unsigned int timeout)
{
    return failOrCall<decltype(libusb_bulk_transfer)>("libusb_bulk_transfer", handle, endpoint,
                                                      data, length, count, timeout);
}

} // extern "C"
