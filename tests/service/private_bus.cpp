#include "tests/service/private_bus.h"

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace
{

/** Everybody may do everything. */
constexpr const char *CONFIGURATION = R"(
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

PrivateBus::PrivateBus()
{
    const QString file = m_folder.filePath(QStringLiteral("bus.conf"));
    writeFile(file, QString::fromUtf8(CONFIGURATION).arg(m_folder.path()).toUtf8().trimmed());
    m_daemon = std::make_unique<RunningProcess>(
        QStringLiteral(IDCARD_DBUS_DAEMON),
        QStringList{"--config-file=" + file, "--nofork", "--print-address=1"});
    m_address = QString::fromUtf8(m_daemon->nextLine());
    EXPECT_FALSE(m_address.isEmpty());
}
