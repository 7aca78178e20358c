#pragma once

// The list of USB devices as text: JSON for programs, a table for people.

#include <QByteArray>
#include <QString>

#include "apps/reading/usb_devices.h"

namespace app
{

/** What the device says it is, and its class; without its ids. */
QString designation(const UsbDevice &device);

/** An array of objects, over several lines, ending with a line break. */
QByteArray toJson(const QVector<UsbDevice> &devices);

/** Rows under headings; empty when there is no device. */
QString toTable(const QVector<UsbDevice> &devices);

/** What to look at when the list is empty. */
QString emptyListNote();

} // namespace app
