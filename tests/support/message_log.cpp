#include "tests/support/message_log.h"

#include <gtest/gtest.h>

#include <QString>

namespace
{

MessageLog *current = nullptr;

} // namespace

MessageLog::MessageLog() : m_previous(qInstallMessageHandler(handle))
{
    current = this;
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(m_previous);
    current = nullptr;
}

std::vector<MessageLog::Message> MessageLog::messages() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_messages;
}

std::vector<std::string> MessageLog::texts() const
{
    std::vector<std::string> texts;
    for (const Message &message : messages())
        texts.push_back(message.text);
    return texts;
}

std::vector<std::string> MessageLog::debugTexts() const
{
    for (const Message &message : messages()) {
        EXPECT_EQ(message.type, QtDebugMsg) << message.text;
        EXPECT_EQ(message.category, "default") << message.text;
    }
    return texts();
}

void MessageLog::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const std::lock_guard<std::mutex> lock(current->m_mutex);
    current->m_messages.push_back({type, context.category, text.toStdString()});
}
