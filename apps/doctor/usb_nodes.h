#pragma once

// What the judgements of USB devices share.

#include "apps/doctor/judgements.h"

namespace app::doctor
{

/** The keys that tell the device. */
inline QJsonObject nodeFacts(const UsbNode &node)
{
    return {{"device", toText(node.device.ids)}, {"node", node.device.node}};
}

/** A finding for each device that could be a reader. */
template <typename Judge>
Findings forEach(const Environment &environment, Judge judge)
{
    Findings findings;
    for (const UsbNode &node : environment.usb.nodes)
        findings << judge(node);
    return findings;
}

} // namespace app::doctor
