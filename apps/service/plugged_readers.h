#pragma once

// What could be a reader on the USB bus, and when that changes.

#include <functional>

#include <QFileSystemWatcher>
#include <QString>
#include <QTimer>

namespace app
{

/** Where the system shows its USB devices. */
struct UsbFolders {
    QString devices = QStringLiteral("/sys/bus/usb/devices");
    QString nodes = QStringLiteral("/dev/bus/usb");
};

class PluggedReaders
{
public:
    explicit PluggedReaders(std::function<void()> changed, UsbFolders folders = {});

    /** Vendor and product ids with blanks between several; empty when there is none. */
    const QString &ids() const { return m_ids; }

private:
    void watchNodes();

    void look();

    std::function<void()> m_changed;
    UsbFolders m_folders;
    QTimer m_settling;
    QFileSystemWatcher m_nodes; ///< the folders in which the devices' nodes come and go
    QString m_ids;
};

} // namespace app
