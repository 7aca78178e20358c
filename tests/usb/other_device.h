#pragma once

// A second device beside the reader of a test: another reader, or none, as its pipe for answers is
// another.

#include "simulator/reader/virtual_reader.h"

namespace usb_test
{

class OtherDevice : public simulator::VirtualReader
{
public:
    explicit OtherDevice(UsbIds ids) : VirtualReader({}, ids) {}

    QByteArray descriptors() const override
    {
        QByteArray bytes = VirtualReader::descriptors();
        return isReader ? bytes : bytes.replace("\x07\x05\x81", "\x07\x05\x83");
    }

    bool isReader = true; ///< set before it is plugged in
};

} // namespace usb_test
