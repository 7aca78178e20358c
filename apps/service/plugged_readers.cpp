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

const QString DEVICES = QStringLiteral("/sys/bus/usb/devices");
const QString NODES = QStringLiteral("/dev/bus/usb");

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

QString idsOfReaders()
{
    QStringList ids;
    const QDir devices(DEVICES);
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

PluggedReaders::PluggedReaders(std::function<void()> changed)
    : m_changed(std::move(changed)), m_ids(idsOfReaders())
{
    watchNodes();
    QObject::connect(&m_nodes, &QFileSystemWatcher::directoryChanged, &m_nodes, [this] {
        watchNodes();
        const QString before = std::exchange(m_ids, idsOfReaders());
        if (m_ids != before)
            m_changed();
    });
}

void PluggedReaders::watchNodes()
{
    const QDir nodes(NODES);
    for (const QString &bus : nodes.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        m_nodes.addPath(nodes.filePath(bus));
    if (nodes.exists())
        m_nodes.addPath(NODES);
}

} // namespace app
