#pragma once

// The readers on the USB bus and what keeps the user from them, found out without opening a
// device. The folders are those of the system unless a caller names others.

#include <optional>

#include "apps/doctor/finding.h"
#include "apps/reading/usb_devices.h"

namespace app::doctor
{

struct NodeRights {
    bool isThere = false;
    unsigned int mode = 0;
    QString owner;
    QString group;
    bool hasAcl = false;
};

struct Holder {
    int process = 0;
    QString name;
};

struct Holders {
    QVector<Holder> processes;
    int unseen = 0; ///< processes whose files this user may not see
};

/** A device and what keeps the user from it. */
struct UsbNode {
    UsbDevice device;
    NodeRights rights;
    Holders holders;
};

/** A udev rule file that is in force. */
struct RuleState {
    QString path;           ///< empty: there is none
    bool isMasked = false;  ///< an empty file or a link to /dev/null takes the rule away
    QVector<UsbIds> opened; ///< the devices that it opens
    QString group;          ///< that it gives them to
};

struct GroupState {
    QString name;
    QString user;
    bool isRoot = false;
    bool exists = false;
    bool isMember = false;  ///< by the system's lists of groups
    bool isInForce = false; ///< for this process
};

struct UsbState {
    int code = 0;                ///< why nothing could be listed: `USB_READER_CODE`; else 0
    std::optional<UsbIds> asked; ///< the only device to look at
    QVector<UsbNode> nodes;      ///< that could be a reader
    int others = 0;              ///< devices that could not
    RuleState rule;              ///< the package's
    QVector<RuleState> added;    ///< for single readers, as the program below writes them
    GroupState group;
    QString accessProgram; ///< that opens a reader, as a word of a shell command
};

constexpr const char *RULE_FILE = "69-idcard-reader.rules";
constexpr const char *ADDED_RULE_FILES = "69-idcard-reader-*.rules";
constexpr const char *ACCESS_PROGRAM = "idcard-reader-access";
constexpr const char *READERS_GROUP = "idcard-reader";

/** The folders of udev's rules; of files of one name the first counts. */
QStringList ruleFolders();

RuleState findRule(const QStringList &folders);

/** The rules for single readers in a folder. */
QVector<RuleState> findAddedRules(const QString &folder);

/** The rule that is for a device: one for it alone, or the package's, which may be for others. */
const RuleState &ruleFor(const UsbState &usb, UsbIds ids);

/** What root runs to open a device to its users. */
QString accessCommand(const UsbState &usb, UsbIds ids);

/** What a rule file's text opens, and to whom. */
RuleState parseRule(const QString &text);

NodeRights rightsOf(const QString &node);

/** Processes other than this one that have the node open. */
Holders holdersOf(const QString &node, const QString &processes = QStringLiteral("/proc"));

/** The relation of this process and its user to a group. */
GroupState groupState(const QString &group);

/** The devices that could be a reader: `asked` alone, or what `couldBeReader` or is in the rule. */
UsbState probeUsb(std::optional<UsbIds> asked, const QStringList &folders = ruleFolders());

// One finding for each of these devices, or one for the bus.
Findings checkReader(const Environment &environment);
Findings checkPermission(const Environment &environment);
Findings checkRule(const Environment &environment);
Findings checkGroup(const Environment &environment);
Findings checkDriver(const Environment &environment);
Findings checkHolder(const Environment &environment);

/** A finding for each device that could be a reader. */
template <typename Judge>
Findings forEach(const UsbState &usb, Judge judge)
{
    Findings findings;
    for (const UsbNode &node : usb.nodes)
        findings << judge(node);
    return findings;
}

} // namespace app::doctor
