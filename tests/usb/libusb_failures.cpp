#include "tests/usb/libusb_failures.h"

#include <dlfcn.h>

#include <libusb.h>

namespace
{

usb_test::LibusbFailures failures;
usb_test::LibusbCalls calls;

template <typename Function>
Function *real(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

void usb_test::setLibusbFailures(const LibusbFailures &toSet)
{
    failures = toSet;
    calls = {};
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
    return failures.init != 0 ? failures.init : real<decltype(libusb_init)>("libusb_init")(ctx);
}

__attribute__((visibility("default"))) void libusb_exit(libusb_context *ctx)
{
    ++calls.exit;
    real<decltype(libusb_exit)>("libusb_exit")(ctx);
}

__attribute__((visibility("default"))) ssize_t libusb_get_device_list(libusb_context *ctx,
                                                                      libusb_device ***list)
{
    if (failures.deviceList != 0)
        return failures.deviceList;
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
    if (++calls.descriptors == failures.descriptorPosition)
        return LIBUSB_ERROR_IO;
    return real<decltype(libusb_get_device_descriptor)>("libusb_get_device_descriptor")(device,
                                                                                        descriptor);
}

__attribute__((visibility("default"))) int
libusb_set_auto_detach_kernel_driver(libusb_device_handle *handle, int enable)
{
    if (failures.autoDetach != 0)
        return failures.autoDetach;
    return real<decltype(libusb_set_auto_detach_kernel_driver)>(
        "libusb_set_auto_detach_kernel_driver")(handle, enable);
}

__attribute__((visibility("default"))) int libusb_open(libusb_device *device,
                                                       libusb_device_handle **handle)
{
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
    return real<decltype(libusb_release_interface)>("libusb_release_interface")(handle, interface);
}

} // extern "C"
