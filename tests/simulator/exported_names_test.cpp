// libidcard_simulator.so offers nine functions and needs nothing of the library it is used with.

#include <gmock/gmock.h>

#include "tests/support/build_programs.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace
{

QByteArray namesOfSimulator(const QStringList &options)
{
    return build_programs::nm(options, QStringLiteral(SIMULATOR_LIBRARY));
}

} // namespace

TEST(ExportedNames, Library_ExportsTheClosedFunctionsAndItsOwnFourAndNothingElse)
{
    std::vector<std::string> names;
    const QByteArray output = namesOfSimulator(
        {QStringLiteral("-D"), QStringLiteral("--defined-only"), QStringLiteral("-P")});
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty())
            names.push_back(line.split(' ').first().toStdString());
    }
    EXPECT_THAT(names,
                ElementsAre("KVO_ClosePort", "KVO_FindIDCard", "KVO_OpenPort", "KVO_ReadIDCard",
                            "idcard_simulator_put_card", "idcard_simulator_put_plain_card",
                            "idcard_simulator_set_faults", "idcard_simulator_take_card", "unpack"));
}

TEST(ExportedNames, Library_NeedsNoneOfTheReadersFunctions)
{
    const std::string undefined =
        namesOfSimulator({QStringLiteral("-D"), QStringLiteral("--undefined-only")}).toStdString();
    EXPECT_THAT(undefined, HasSubstr("QString")); // the list is there
    for (const char *name : {"readIDCard", "KVO_", "unpack", "CCommon", "CIdData", "COUNTRY"})
        EXPECT_THAT(undefined, Not(HasSubstr(name)));
}
