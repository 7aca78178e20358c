#pragma once

// What stands between a USB reader and the user, found out without opening a device. The folders
// are those of the system unless a caller names others.

#include "apps/doctor/environment.h"

namespace app::doctor
{

constexpr const char *RULE_FILE = "69-idcard-reader.rules";
constexpr const char *READERS_GROUP = "idcard-reader";

/** The folders of udev's rules; of files of one name the first counts. */
QStringList ruleFolders();

RuleState findRule(const QStringList &folders);

/** What a rule file's text opens, and to whom. */
RuleState parseRule(const QString &text);

NodeRights rightsOf(const QString &node);

/** Processes other than this one that have the node open. */
Holders holdersOf(const QString &node, const QString &processes = QStringLiteral("/proc"));

/** How this process and its user stand to a group. */
GroupState groupState(const QString &group);

/** The devices that could be a reader: `asked` alone, or what has its pipes or stands in the rule.
 */
UsbState probeUsb(std::optional<UsbIds> asked, const QStringList &folders = ruleFolders());

} // namespace app::doctor
