#pragma once

// Collects what is written to Qt's log while it lives, in order.

#include <mutex>
#include <string>
#include <vector>

#include <QtGlobal>

class MessageLog
{
public:
    MessageLog();
    ~MessageLog();
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    struct Message {
        QtMsgType type;
        std::string category;
        std::string text;
    };

    std::vector<Message> messages() const;

    /** The texts alone. */
    std::vector<std::string> texts() const;

    /** The same, of which all must be debug lines of the default category. */
    std::vector<std::string> debugTexts() const;

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    mutable std::mutex m_mutex;
    std::vector<Message> m_messages;
    QtMessageHandler m_previous;
};
