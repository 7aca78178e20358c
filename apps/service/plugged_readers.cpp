#include "apps/service/plugged_readers.h"

#include <utility>

#include <QDir>
#include <QFile>
#include <QStringList>

#include "apps/process/link_target.h"

namespace app
{

namespace
{

// The kernel makes a device's node before its interfaces.
constexpr int TIME_TO_SETTLE_MS = 300;

QByteArray attribute(const QString &path)
{
    constexpr qint64 MOST = 64;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(MOST).trimmed() : QByteArray();
}

/** Whether it has the pipes of a reader and no driver of the kernel holds it. */
bool couldBeReader(const QString &interface)
{
    const QString driver = linkTarget(interface + QLatin1String("/driver"));
    return (driver.isEmpty() || driver.endsWith(QLatin1String("/usbfs"))) &&
           attribute(interface + QLatin1String("/ep_02/type")) == "Bulk" &&
           attribute(interface + QLatin1String("/ep_81/type")) == "Bulk";
}

QString idsOfReaders(const QDir &devices)
{
    QStringList ids;
    for (const QString &interface : devices.entryList({QStringLiteral("*:*.0")}, QDir::Dirs)) {
        if (!couldBeReader(devices.filePath(interface)))
            continue;
        const QString device = devices.filePath(interface.section(QLatin1Char(':'), 0, 0));
        ids << QString::fromLatin1(attribute(device + QLatin1String("/idVendor")) + ':' +
                                   attribute(device + QLatin1String("/idProduct")));
    }
    ids.sort();
    return ids.join(QLatin1Char(' '));
}

} // namespace

PluggedReaders::PluggedReaders(std::function<void()> changed, UsbFolders folders)
    : m_changed(std::move(changed)), m_folders(std::move(folders)),
      m_ids(idsOfReaders(m_folders.devices))
{
    watchNodes();
    m_settling.setSingleShot(true);
    QObject::connect(&m_settling, &QTimer::timeout, &m_settling, [this] { look(); });
    QObject::connect(&m_nodes, &QFileSystemWatcher::directoryChanged, &m_settling, [this] {
        watchNodes();
        m_settling.start(TIME_TO_SETTLE_MS);
    });
    m_settling.start(TIME_TO_SETTLE_MS); // a reader may be on its way, with its node there already
}

void PluggedReaders::watchNodes()
{
    const QDir nodes(m_folders.nodes);
    if (!nodes.exists())
        return;
    m_nodes.addPath(nodes.path());
    for (const QString &bus : nodes.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        m_nodes.addPath(nodes.filePath(bus));
}

void PluggedReaders::look()
{
    const QString before = std::exchange(m_ids, idsOfReaders(m_folders.devices));
    if (m_ids != before)
        m_changed();
}

} // namespace app
