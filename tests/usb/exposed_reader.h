#pragma once

// The reader's classes with what a derived class may see of them.

#include "reader/usbidreader.h"

namespace usb_test
{

constexpr unsigned short VENDOR = 0x1209;
constexpr unsigned short PRODUCT = 0x0001;

template <typename Reader>
class Exposed : public Reader
{
public:
    explicit Exposed(unsigned short vendor = VENDOR, unsigned short product = PRODUCT)
        : Reader(vendor, product)
    {
    }
    int state() const { return Reader::m_state; }
    libusb_context *context() const { return Reader::m_context; }
    libusb_device_handle *handle() const { return Reader::m_handle; }
    unsigned int vendorId() const { return Reader::m_vendorId; }
    unsigned int productId() const { return Reader::m_productId; }
};

using OpenedDevice = Exposed<CLibUsbEx>;
using IdReader = Exposed<CUsbIdReader>;

} // namespace usb_test
