#pragma once

// Collects the debug lines of Qt's log while it lives, each with what `state` gave at that moment.

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QString>
#include <QtGlobal>

class LogWatch
{
public:
    using Lines = std::vector<std::pair<std::string, std::string>>;

    explicit LogWatch(std::function<std::string()> state) : m_state(std::move(state))
    {
        current() = this;
        m_previous = qInstallMessageHandler(handle);
    }
    ~LogWatch()
    {
        qInstallMessageHandler(m_previous);
        current() = nullptr;
    }
    LogWatch(const LogWatch &) = delete;
    LogWatch(LogWatch &&) = delete;
    LogWatch &operator=(const LogWatch &) = delete;
    LogWatch &operator=(LogWatch &&) = delete;

    /** Line and state, in order. */
    const Lines &lines() const { return m_lines; }

private:
    static LogWatch *&current()
    {
        static LogWatch *watch = nullptr;
        return watch;
    }
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        EXPECT_EQ(type, QtDebugMsg);
        EXPECT_STREQ(context.category, "default");
        current()->m_lines.emplace_back(text.toStdString(), current()->m_state());
    }

    std::function<std::string()> m_state;
    Lines m_lines;
    QtMessageHandler m_previous = nullptr;
};
