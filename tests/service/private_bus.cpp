#include "tests/service/private_bus.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

#include "tests/support/files.h"

const char *const OPEN_POLICY = R"(
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
)";

namespace
{

/** To which services add what they need. */
constexpr const char *DISTRIBUTION_POLICY = R"(
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus"/>
  </policy>
)";

constexpr const char *CONFIGURATION = R"(
<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1/bus</listen>
  <auth>EXTERNAL</auth>
  %2
</busconfig>
)";

/** The policy that is installed, for the user of the test in the place of the service's own. */
QString policyForThisUser()
{
    QString text =
        QString::fromUtf8(readFile(IDCARD_SERVICE_FILES "/" IDCARD_SERVICE_NAME ".conf"));
    const passwd *const user = ::getpwuid(::getuid());
    text.replace("user=\"idcard-readerd\"",
                 QStringLiteral("user=\"%1\"").arg(QString::fromUtf8(user->pw_name)));
    text = text.mid(text.indexOf("<busconfig>") + 11);
    return text.left(text.indexOf("</busconfig>"));
}

} // namespace

QString systemPolicy()
{
    return QLatin1String(DISTRIBUTION_POLICY) + policyForThisUser();
}

PrivateBus::PrivateBus(const QString &policy)
{
    const QString file = m_folder.filePath("bus.conf");
    writeFile(file,
              QString::fromUtf8(CONFIGURATION).arg(m_folder.path(), policy).toUtf8().trimmed());
    m_daemon = std::make_unique<RunningProcess>(
        IDCARD_DBUS_DAEMON, QStringList{"--config-file=" + file, "--nofork", "--print-address=1"});
    m_address = QString::fromUtf8(m_daemon->nextLine());
    EXPECT_FALSE(m_address.isEmpty());
}

const PrivateBus &busInPlaceOfTheSystems()
{
    static const PrivateBus bus(OPEN_POLICY);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
    return bus;
}
