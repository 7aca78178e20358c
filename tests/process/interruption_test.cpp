#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <unistd.h>

#include "apps/process/interruption.h"
#include "tests/support/terminal.h"

namespace
{

TEST(WriteUnlessInterrupted, WaitsForRoomAlsoWhereWritesDoNot)
{
    const Terminal terminal;
    const int end = ::open(terminal.path().toLocal8Bit().constData(),
                           O_WRONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(end, 0);
    std::string shown;
    std::thread reader([&] {
        ::usleep(50000); // until there is no room any more
        shown = terminal.read();
    });
    const QByteArray bytes(100000, 'x');
    EXPECT_TRUE(app::writeUnlessInterrupted(end, bytes));
    ::close(end);
    reader.join();
    EXPECT_EQ(shown, bytes.toStdString());
}

} // namespace
