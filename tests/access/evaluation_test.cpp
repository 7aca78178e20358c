// The rule as this machine's own udev evaluates it for an imitated device, with the group that this
// machine's systemd-sysusers makes.

#include "tests/access/access_machine.h"

using testing::HasSubstr;
using testing::Not;

namespace
{

class AccessEvaluation : public AccessMachine
{
protected:
    AccessEvaluation()
    {
        EXPECT_TRUE(QFile::copy(IDCARD_RULE_FILE, path("rules/69-idcard-reader.rules")));
    }
};

TEST_F(AccessEvaluation, SysusersMakesTheGroup)
{
    EXPECT_GT(groupNumber().toInt(), 0);
}

TEST_F(AccessEvaluation, ReaderIsOpenedToTheGroupAndToTheUserAtTheMachine)
{
    if (!mayMakeFileTrees())
        GTEST_SKIP() << "this machine lets no test make a file tree of its own";
    expectOpened(IDCARD_USB_VENDOR_ID, IDCARD_USB_PRODUCT_ID, "69-idcard-reader.rules");
}

TEST_F(AccessEvaluation, OtherDevicesAreLeftAlone)
{
    if (!mayMakeFileTrees())
        GTEST_SKIP() << "this machine lets no test make a file tree of its own";
    for (const auto &[vendor, product] :
         {std::pair(IDCARD_USB_VENDOR_ID, "fffe"), std::pair("fffe", IDCARD_USB_PRODUCT_ID)}) {
        const std::string said = evaluate(vendor, product);
        EXPECT_THAT(said,
                    HasSubstr("Reading rules file: /etc/udev/rules.d/69-idcard-reader.rules"));
        EXPECT_THAT(said, Not(HasSubstr("69-idcard-reader.rules:3")));
        EXPECT_THAT(said, Not(HasSubstr("RUN 'uaccess'")));
    }
}

} // namespace
