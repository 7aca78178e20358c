// What "idcard-reader read" and "decode" say of a failure whose code has several causes: the one
// that the doctor sees on this machine.

#include <csignal>

#include <gmock/gmock.h>

#include <QDir>

#include "tests/support/cancelled_thread.h"
#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"
#include "tests/usb/reader_on_bus.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace
{

constexpr const char *FIVE_GUESSES = "or the reader maker's library was not found";

void waitUntilItHasAChild(pid_t parent)
{
    const QString file = QStringLiteral("/proc/%1/task/%1/children").arg(parent);
    waitUntil([&file] { return !readFile(file).isEmpty(); });
}

/** A machine with an emulated USB bus, to which the maker's library can be added. */
class Diagnosis : public FolderTest, public usb_test::ReaderOnBus
{
protected:
    void SetUp() override { m_variables = bus().childEnvironment(); }

    /** The simulator under the name of the maker's library, which cannot open the reader. */
    void installMakersLibrary()
    {
        m_variables.insert(m_installed.variables("resident", "open-fails=3"));
    }

    /** Puts a faulty library where this one of the makers' is looked for. */
    void link(const char *fault, const char *name)
    {
        ASSERT_TRUE(QDir().mkdir(path("vendor")));
        ASSERT_TRUE(
            QFile::link(QStringLiteral(IDCARD_BUILD_LIB_DIR "/libidcard_maker_%1.so").arg(fault),
                        path("vendor/") + name));
        m_variables["LD_LIBRARY_PATH"] = path("vendor");
    }

    ProcessResult run(const QStringList &arguments) { return runTool(arguments, {m_variables}); }
    const QMap<QString, QString> &variables() const { return m_variables; }

private:
    InstalledReader m_installed;
    QMap<QString, QString> m_variables;
};

TEST_F(Diagnosis, MissingLibraryIsNamedWithTheCommandThatPutsItInPlace)
{
    const ProcessResult read = run({"read"});
    EXPECT_EQ(read.exitStatus, 3);
    EXPECT_THAT(read.error(),
                AllOf(HasSubstr("libkvo_reader.so, is not here"), HasSubstr("\n      ln -s "),
                      HasSubstr("Code: -5 (IDCARD_RESULT_PORT_NOT_OPEN)"),
                      HasSubstr("\"idcard-reader doctor\" says more"),
                      Not(HasSubstr(FIVE_GUESSES))));
    EXPECT_LT(read.error().find("What to do: "), read.error().find("Cause: "));
}

TEST_F(Diagnosis, IsInTheJsonToo)
{
    const QJsonObject error =
        parsedObject(run({"read", "--json"}).standardOutput)["error"].toObject();
    EXPECT_EQ(error["code"], -5);
    EXPECT_EQ(error["name"], "IDCARD_RESULT_PORT_NOT_OPEN");
    EXPECT_THAT(error["cause"].toString().toStdString(),
                HasSubstr("libkvo_reader.so, is not here"));
    EXPECT_THAT(error["remedy"].toString().toStdString(),
                AllOf(HasSubstr("\nln -s "), HasSubstr("\n\"idcard-reader doctor\"")));
}

TEST_F(Diagnosis, ReaderThatIsNotPluggedInIsTheCauseWhenTheLibraryIsThere)
{
    installMakersLibrary();
    const ProcessResult read = run({"read"});
    EXPECT_EQ(read.exitStatus, 3);
    EXPECT_THAT(read.error(), AllOf(HasSubstr("could be a reader"), HasSubstr("Plug the reader in"),
                                    Not(HasSubstr(FIVE_GUESSES))));
}

TEST_F(Diagnosis, ReaderThatThisUserMayNotOpenIsTheCauseWhenItIsPluggedIn)
{
    if (!qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR"))
        GTEST_SKIP() << "the emulator cannot start a program as another user";
    installMakersLibrary();
    plugIn({}, "permission-denied");
    const ProcessResult read = runToolAsOrdinaryUser({"read"}, {variables()});
    EXPECT_EQ(read.exitStatus, 3);
    EXPECT_THAT(read.error(),
                AllOf(HasSubstr("This user may not open"), HasSubstr("idcard-reader-access")));
}

TEST_F(Diagnosis, MachineInOrderLeavesTheCausesOfTheCode)
{
    installMakersLibrary();
    plugIn({});
    const ProcessResult read = run({"read"});
    EXPECT_EQ(read.exitStatus, 3);
    EXPECT_THAT(QString::fromStdString(read.error()).simplified().toStdString(),
                AllOf(HasSubstr(FIVE_GUESSES), HasSubstr("\"idcard-reader doctor\" says more")));
}

TEST_F(Diagnosis, IsSaidOnceByWatch)
{
    RunningTool watch({"watch", "--interval", "10"}, {variables()});
    EXPECT_TRUE(watch.waitForError("Code: -5"));
    EXPECT_THAT(watch.endedBy(SIGTERM).error(), HasSubstr("libkvo_reader.so, is not here"));
}

TEST_F(Diagnosis, MissingDecoderIsNamedForARecordWithItsPhotoCompressed)
{
    const ProcessResult decode = run({"decode", recordFile("resident")});
    EXPECT_EQ(decode.exitStatus, 6);
    EXPECT_THAT(decode.error(), AllOf(HasSubstr("libwlt_decoder.so, is not here"),
                                      HasSubstr("needs --simulator-photos")));
}

TEST_F(Diagnosis, LibraryThatHasNoPartInTheFailureIsNotLoaded)
{
    link("HANGS", IDCARD_WLT_LIBRARY);
    EXPECT_THAT(run({"read"}).error(), HasSubstr("libkvo_reader.so, is not here"));
}

TEST_F(Diagnosis, SignalToEnd_EndsItWithTheCausesOfTheCode)
{
    link("HANGS_IN_CHILD", IDCARD_VENDOR_READER_LIBRARY);
    RunningTool read({"read"}, {variables()});
    waitUntilItHasAChild(read.id());
    const ProcessResult ended = read.endedBy(SIGTERM);
    EXPECT_EQ(ended.exitStatus, 3);
    EXPECT_THAT(QString::fromStdString(ended.error()).simplified().toStdString(),
                HasSubstr(FIVE_GUESSES));
}

TEST_F(Diagnosis, FailureOfTheSimulatorIsNotLookedIntoByTheDoctor)
{
    const ProcessResult read = run({"read", "--simulate", "resident", "--fault", "open-fails=3"});
    EXPECT_EQ(read.exitStatus, 3);
    EXPECT_THAT(QString::fromStdString(read.error()).simplified().toStdString(),
                HasSubstr(FIVE_GUESSES));
}

} // namespace
