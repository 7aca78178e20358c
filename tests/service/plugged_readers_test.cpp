// What the service takes for a reader on the USB bus, in folders as the kernel's.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "apps/service/plugged_readers.h"
#include "tests/service/bus_client.h"
#include "tests/support/files.h"

namespace
{

class PluggedReaders : public testing::Test
{
protected:
    PluggedReaders()
    {
        QDir().mkpath(m_folders.devices);
        QDir().mkpath(m_folders.nodes + "/001");
    }

    /** A device as the kernel shows it, with the types of its pipes 02 and 81. */
    void show(const QString &name, const QByteArray &product, const QByteArray &pipes = "Bulk")
    {
        const QString device = m_folders.devices + '/' + name;
        const QString interface = device + ":1.0";
        for (const char *pipe : {"/ep_02", "/ep_81"}) {
            QDir().mkpath(interface + pipe);
            writeFile(interface + pipe + "/type", pipes + '\n');
        }
        QDir().mkpath(device);
        writeFile(device + "/idVendor", "1209\n");
        writeFile(device + "/idProduct", product + '\n');
    }

    void hide(const QString &name)
    {
        QDir(m_folders.devices + '/' + name).removeRecursively();
        QDir(m_folders.devices + '/' + name + ":1.0").removeRecursively();
    }

    void bind(const QString &name, const QString &driver)
    {
        QFile::link("../../../drivers/" + driver, m_folders.devices + '/' + name + ":1.0/driver");
    }

    QString ids() const
    {
        return app::PluggedReaders([] {}, m_folders).ids();
    }

    QTemporaryDir m_folder;
    app::UsbFolders m_folders{m_folder.filePath("sys"), m_folder.filePath("dev")};
};

} // namespace

TEST_F(PluggedReaders, WithoutDevices_AreNone)
{
    EXPECT_EQ(ids(), QString());
    m_folders = {m_folder.filePath("none"), m_folder.filePath("none")};
    EXPECT_EQ(ids(), QString());
}

TEST_F(PluggedReaders, DevicesWithThePipesOfAReader_AreGivenByTheirIds)
{
    show("1-1", "0001");
    EXPECT_EQ(ids(), "1209:0001");
    show("1-2.1", "0002");
    show("1-3", "0003", "Interrupt");
    EXPECT_EQ(ids(), "1209:0001 1209:0002");
}

TEST_F(PluggedReaders, DeviceThatADriverHolds_IsNone)
{
    show("1-1", "0001");
    show("1-2", "0002");
    bind("1-1", "usb-storage");
    bind("1-2", "usbfs"); // that of a program which reads
    EXPECT_EQ(ids(), "1209:0002");
}

TEST_F(PluggedReaders, ReaderThatComesAndGoes_IsReported)
{
    int changes = 0;
    const app::PluggedReaders readers([&] { ++changes; }, m_folders);
    writeFile(m_folders.nodes + "/001/002", {});
    show("1-1", "0001"); // after its node
    EXPECT_TRUE(waitFor([&] { return changes == 1; }));
    EXPECT_EQ(readers.ids(), "1209:0001");
    QFile::remove(m_folders.nodes + "/001/002");
    hide("1-1");
    EXPECT_TRUE(waitFor([&] { return changes == 2; }));
    EXPECT_EQ(readers.ids(), QString());
}

TEST_F(PluggedReaders, ReaderWhoseNodeWasThereBeforeItsInterface_IsReported)
{
    int changes = 0;
    writeFile(m_folders.nodes + "/001/002", {});
    const app::PluggedReaders readers([&] { ++changes; }, m_folders);
    show("1-1", "0001");
    EXPECT_TRUE(waitFor([&] { return changes == 1; }));
    EXPECT_EQ(readers.ids(), "1209:0001");
}

TEST_F(PluggedReaders, ReaderOnABusThatIsNew_IsReported)
{
    int changes = 0;
    const app::PluggedReaders readers([&] { ++changes; }, m_folders);
    QDir().mkpath(m_folders.nodes + "/002");
    show("2-1", "0001");
    EXPECT_TRUE(waitFor([&] { return changes == 1; }));
    hide("2-1");
    writeFile(m_folders.nodes + "/002/001", {});
    EXPECT_TRUE(waitFor([&] { return changes == 2; }));
}

TEST_F(PluggedReaders, OtherDevicesThatCome_AreNotReported)
{
    int changes = 0;
    const app::PluggedReaders readers([&] { ++changes; }, m_folders);
    show("1-1", "0001", "Isoc");
    writeFile(m_folders.nodes + "/001/002", {});
    EXPECT_FALSE(waitFor([&] { return changes > 0; }, 1000));
}
