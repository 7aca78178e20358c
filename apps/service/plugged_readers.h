#pragma once

// What could be a reader on the USB bus, and when that changes.

#include <functional>

#include <QFileSystemWatcher>
#include <QString>

namespace app
{

class PluggedReaders
{
public:
    explicit PluggedReaders(std::function<void()> changed);

    /** Vendor and product ids with blanks between several; empty when there is none. */
    const QString &ids() const { return m_ids; }

private:
    void watchNodes();

    std::function<void()> m_changed;
    QFileSystemWatcher m_nodes; ///< the folders in which the devices' nodes come and go
    QString m_ids;
};

} // namespace app
