#include "tests/support/gui_environment.h"

#include <memory>

#include <gtest/gtest.h>

#include <QGuiApplication>

namespace
{

class GuiEnvironment : public testing::Environment
{
public:
    void SetUp() override { m_application = std::make_unique<QGuiApplication>(m_count, m_words); }
    void TearDown() override { m_application.reset(); }

private:
    char m_name[5] = "test";
    char *m_words[2] = {m_name, nullptr};
    int m_count = 1;
    std::unique_ptr<QGuiApplication> m_application;
};

[[maybe_unused]] const testing::Environment *const ENVIRONMENT =
    testing::AddGlobalTestEnvironment(new GuiEnvironment);

} // namespace

double expectedDpi()
{
    return qEnvironmentVariable("IDCARD_TEST_DPI").toDouble();
}

double pixelsPerMm()
{
    return expectedDpi() / 25.4;
}
