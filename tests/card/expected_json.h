#pragma once

// What the tool must print as JSON for a described card that is not saved.

#include <QJsonObject>

#include "simulator/card/card_description.h"

/** By `read`. */
QJsonObject expectedOfRead(const simulator::CardDescription &card);

/** By `usb` and `decode`, with the photo decoded; `road` is "usb" or "file". */
QJsonObject expectedOfRecord(const simulator::CardDescription &card, const QString &road);
