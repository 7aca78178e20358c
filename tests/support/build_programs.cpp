#include "tests/support/build_programs.h"

#include <gtest/gtest.h>

#include "tests/support/process.h"

namespace build_programs
{

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    const ProcessResult result = runProcess(program, arguments);
    EXPECT_TRUE(result.finished) << program.toStdString();
    EXPECT_EQ(result.exitStatus, 0) << result.error();
    return result.standardOutput;
}

QByteArray nm(const QStringList &options, const QString &file)
{
    return outputOf(QStringLiteral(IDCARD_NM), options + QStringList{file});
}

QByteArray readelf(const QStringList &options, const QString &file)
{
    return outputOf(QStringLiteral(IDCARD_READELF), options + QStringList{file});
}

} // namespace build_programs
