// In every test program: a warning of Qt that no test looks for (ExpectedWarning, MessageLog) and
// that is not known fails the test in which it comes.

#include "tests/support/expected_warning.h"

#include <algorithm>
#include <atomic>

#include <gtest/gtest.h>

#include <QString>
#include <QtGlobal>

namespace
{

/** How the warnings begin that are no fault of this project, or have to be. */
constexpr const char *KNOWN[] = {
    // The pictures ask for it whenever they need the screen, at which Qt warns each time.
    "Attribute Qt::AA_EnableHighDpiScaling must be set before QCoreApplication is created",
    // A machine without a session of a desktop.
    "QStandardPaths: XDG_RUNTIME_DIR not set",
    // The JPEG plug-in, where a test takes the memory away.
    "Insufficient memory",
};

QtMessageHandler before = nullptr;
std::atomic<const char *> expected = nullptr;
std::atomic<bool> hasCome = false;

bool isExpected(const QString &text)
{
    const char *const beginning = expected;
    if (beginning == nullptr || !text.startsWith(QLatin1String(beginning)))
        return false;
    hasCome = true;
    return true;
}

bool isKnown(const QString &text)
{
    return std::any_of(std::begin(KNOWN), std::end(KNOWN), [&text](const char *beginning) {
        return text.startsWith(QLatin1String(beginning));
    });
}

void judge(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if ((type == QtWarningMsg || type == QtCriticalMsg) && !isKnown(text) && !isExpected(text))
        ADD_FAILURE() << "nobody expected this warning: " << text.toStdString();
    before(type, context, text);
}

[[maybe_unused]] const bool IS_INSTALLED = [] {
    before = qInstallMessageHandler(judge);
    return true;
}();

} // namespace

ExpectedWarning::ExpectedWarning(const char *beginning)
{
    hasCome = false;
    expected = beginning;
}

ExpectedWarning::~ExpectedWarning()
{
    EXPECT_TRUE(hasCome) << "nothing warned: " << expected;
    expected = nullptr;
}
