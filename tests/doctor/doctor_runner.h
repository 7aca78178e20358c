#pragma once

// Runs "idcard-reader doctor", the built program, on machines with one fault each.

#include <gmock/gmock.h>

#include <QDir>
#include <QJsonArray>

#include "tests/support/files.h"
#include "tests/tool/tool_runner.h"

using Variables = QMap<QString, QString>;

/** All reports in JSON that the tests of this program saw. */
inline QTemporaryDir &samples()
{
    static QTemporaryDir folder;
    return folder;
}

inline QString builtLibrary(const char *fault)
{
    return QDir(IDCARD_BUILD_LIB_DIR)
        .filePath(QStringLiteral("libidcard_maker_%1.so").arg(QLatin1String(fault)));
}

inline bool isEmulated()
{
    return !qEnvironmentVariableIsEmpty("IDCARD_TEST_EMULATOR");
}

class Doctor : public testing::Test
{
protected:
    void SetUp() override { set("LD_LIBRARY_PATH", m_installed.variables({})["LD_LIBRARY_PATH"]); }

    void set(const char *name, const QString &value) { m_variables[QLatin1String(name)] = value; }
    QString path(const QString &name) const { return m_base.filePath(name); }

    /** Puts a file under the name of the maker's library, in the place of the one that is there. */
    void install(const QByteArray &content)
    {
        QDir().mkpath(path("vendor"));
        QFile::remove(path("vendor/" IDCARD_VENDOR_READER_LIBRARY));
        writeFile(path("vendor/" IDCARD_VENDOR_READER_LIBRARY), content);
        set("LD_LIBRARY_PATH", path("vendor") + ':' + m_installed.variables({})["LD_LIBRARY_PATH"]);
    }

    /** Behind what is preloaded already: a sanitizer wants to be the first of all. */
    void preload(const char *name)
    {
        QStringList all = {QDir(IDCARD_BUILD_LIB_DIR).filePath(QLatin1String(name))};
        if (!qEnvironmentVariableIsEmpty("LD_PRELOAD"))
            all.prepend(qEnvironmentVariable("LD_PRELOAD"));
        set("LD_PRELOAD", all.join(':'));
    }

    void runFrom(const QString &program) { m_program = program; }
    void runIn(const QString &folder) { m_folder = folder; }

    ProcessResult run(const QStringList &arguments) const
    {
        ProcessInput input;
        input.environment = m_variables;
        input.workingDirectory = m_folder;
        return m_program.isEmpty()
                   ? runTool(QStringList{"doctor"} + arguments, input)
                   : runProcess(m_program, QStringList{"doctor"} + arguments, input);
    }

    /** The report of a run in JSON, which is kept for the test of the schema. */
    static QJsonObject reportOf(const ProcessResult &run)
    {
        static int count = 0;
        EXPECT_TRUE(run.finished) << run.error();
        writeFile(samples().filePath(QStringLiteral("%1.json").arg(++count)), run.standardOutput);
        return parsedObject(run.standardOutput);
    }

    static QJsonObject findingIn(const QJsonObject &report, const char *check)
    {
        for (const auto &value : report["findings"].toArray()) {
            if (value.toObject()["check"].toString() == QLatin1String(check))
                return value.toObject();
        }
        ADD_FAILURE() << "no finding of " << check;
        return {};
    }

    static std::string textOf(const QJsonObject &finding)
    {
        return finding["text"].toString().toStdString();
    }

    /**
     * Runs the program twice: its JSON has this finding, its text this part behind the title, and
     * the exit status is that of the level. Returns the finding.
     */
    QJsonObject expectFinding(const char *check, const char *level, const std::string &part,
                              const QStringList &arguments)
    {
        const int status = QLatin1String(level) == QLatin1String("failure") ? 10 : 9;
        const ProcessResult json = run(arguments + QStringList{"--json"});
        EXPECT_EQ(json.exitStatus, status) << json.error();
        const QJsonObject report = reportOf(json);
        EXPECT_EQ(report["result"].toString(), level);
        QJsonObject finding = findingIn(report, check);
        EXPECT_EQ(finding["level"].toString(), level);
        EXPECT_THAT(textOf(finding), testing::HasSubstr(part));
        EXPECT_THAT(finding["remedy"].toString().toStdString(), testing::Not(testing::IsEmpty()));

        if (isEmulated())
            return finding; // the text differs by no processor, and a run takes ten times as long
        const ProcessResult text = run(arguments);
        EXPECT_EQ(text.exitStatus, status);
        EXPECT_THAT(text.error(), testing::IsEmpty());
        const QString flat = QString::fromUtf8(text.standardOutput).simplified();
        const QString marker = status == 10 ? "FAILURE" : "warning";
        EXPECT_THAT(flat.toStdString(), testing::HasSubstr(part));
        EXPECT_THAT(flat.toStdString(), testing::HasSubstr(marker.toStdString()));
        return finding;
    }

    QJsonObject expectFault(const char *check, const char *level, const char *part)
    {
        return expectFinding(check, level, part, {"--road", "library"});
    }

    Variables &variables() { return m_variables; }

private:
    QTemporaryDir m_base;
    InstalledReader m_installed;
    Variables m_variables;
    QString m_program;
    QString m_folder;
};
