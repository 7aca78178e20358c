#include "apps/browser_host/browser_host.h"

#include <array>
#include <cerrno>
#include <memory>

#include <QDeadlineTimer>
#include <QJsonDocument>

#include <poll.h>
#include <unistd.h>

#include "apps/browser_host/browser_failure.h"
#include "apps/browser_host/frames.h"
#include "apps/browser_host/request.h"
#include "apps/browser_host/tool_run.h"
#include "apps/process/interruption.h"
#include "apps/process/json_object.h"
#include "apps/process/text_layout.h"
#include "apps/process/translation.h"
#include "apps/web_sites/last_answer.h"
#include "apps/web_sites/origin_list.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Browser)

constexpr int MS_PER_SECOND = 1000;

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool isKnown(const QStringList &arguments)
{
    return arguments == QStringList{QString::fromLatin1(CHROMIUM_EXTENSION)} ||
           (arguments.size() == 2 && arguments.last() == QLatin1String(FIREFOX_EXTENSION));
}

class BrowserHost
{
public:
    BrowserHost(const HostSettings &settings, Output *output)
        : m_settings(settings), m_output(output)
    {
    }

    /** Until the browser has gone. */
    void serve()
    {
        while (!m_isOver) {
            std::array<pollfd, 3> ends = {{{STDIN_FILENO, POLLIN, 0},
                                           {interruptionDescriptor(), POLLIN, 0},
                                           {m_tool ? m_tool->descriptor() : -1, POLLIN, 0}}};
            if (::poll(ends.data(), ends.size(), waitingTime()) < 0 && errno != EINTR)
                return;
            if (isInterrupted())
                return;
            if (ends[0].revents != 0)
                takeInput();
            if (!m_isOver && m_tool && ends[2].revents != 0 && !m_tool->collect())
                deliverCard();
            if (!m_isOver && m_tool && m_deadline.hasExpired())
                giveUp();
        }
    }

    void refuse(BrowserFault fault, const QString &cause)
    {
        send(JsonObject{{"error", toJson(browserFailure(fault, cause))}});
    }

private:
    int waitingTime() const { return m_tool ? static_cast<int>(m_deadline.remainingTime()) : -1; }

    void takeInput()
    {
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count <= 0) {
            m_isOver = count == 0 || errno != EINTR;
            return;
        }
        // What follows a request that is too long is dropped, but taken: a browser that could not
        // write all of it would not read the answer either.
        if (m_frames.isTooLong())
            return;
        m_frames.take(QByteArray(buffer.data(), static_cast<int>(count)));
        while (const auto body = m_frames.next()) {
            if (!m_isOver)
                takeRequest(*body);
        }
        if (m_frames.isTooLong())
            refuse(BrowserFault::REQUEST_WRONG,
                   tr("A request has at most %1 bytes.").arg(FrameReader::LONGEST_REQUEST));
    }

    void takeRequest(const QByteArray &body)
    {
        if (m_tool) {
            refuse(BrowserFault::REQUEST_WRONG, tr("One request is answered at a time."));
            return;
        }
        const Request request = parseRequest(body);
        m_origin = request.origin;
        if (!request.language.isEmpty())
            chooseLanguage(QLocale(request.language));
        if (!request.problem.isEmpty())
            refuse(BrowserFault::REQUEST_WRONG, request.problem);
        else if (isAllowed(request.origin))
            startTool(request);
    }

    bool isAllowed(const QString &origin)
    {
        const OriginList list = readOriginList(m_settings.originList, m_settings.listOwner);
        if (!list.mistake.isEmpty())
            refuse(BrowserFault::LIST_REFUSED, list.mistake);
        else if (!list.origins.contains(origin))
            refuse(BrowserFault::ORIGIN_NOT_LISTED,
                   filledIn(tr("%1 is not in %2."), printable(origin), m_settings.originList));
        else
            return true;
        return false;
    }

    void startTool(const Request &request)
    {
        m_tool = std::make_unique<ToolRun>(m_settings.tool, request);
        m_deadline = QDeadlineTimer(request.timeoutSeconds * MS_PER_SECOND + m_settings.graceMs);
        if (m_tool->problem().isEmpty())
            return;
        refuse(BrowserFault::TOOL_NOT_STARTED, m_tool->problem());
        m_tool.reset();
    }

    void deliverCard()
    {
        const bool isCut = m_tool->isOutputTooLong();
        const QString problem = isCut ? QString() : m_tool->end();
        const QJsonObject answer = QJsonDocument::fromJson(m_tool->output()).object();
        m_tool.reset();
        if (isCut || compact(answer).size() > LONGEST_ANSWER)
            refuse(BrowserFault::ANSWER_TOO_LONG,
                   tr("It is more than %1 bytes.").arg(LONGEST_ANSWER));
        else if (!problem.isEmpty())
            refuse(BrowserFault::TOOL_BROKEN, problem);
        else if (answer.isEmpty())
            refuse(BrowserFault::TOOL_BROKEN, tr("What it printed is no card and no error."));
        else
            send(answer);
    }

    void giveUp()
    {
        m_tool.reset();
        refuse(BrowserFault::TOOL_HANGS, tr("It went on after the time limit and was ended."));
    }

    void send(const QJsonObject &answer)
    {
        if (!m_output->write(frameOf(compact(answer))))
            m_isOver = true;
        const QJsonObject error = answer.value(QStringLiteral("error")).toObject();
        const bool isCard = answer.contains(QStringLiteral("kind"));
        if (!m_origin.isEmpty())
            noteLastAnswer(m_origin, isCard ? QStringLiteral("card")
                                            : error.value(QStringLiteral("name")).toString());
    }

    const HostSettings &m_settings;
    Output *m_output;
    FrameReader m_frames;
    std::unique_ptr<ToolRun> m_tool; ///< that reads a card; null: none does
    QDeadlineTimer m_deadline;       ///< of the tool
    QString m_origin;                ///< of the last request
    bool m_isOver = false;
};

} // namespace

ExitStatus serveBrowser(const QStringList &arguments, const HostSettings &settings, Output *output)
{
    catchInterruption(ExitStatus::DONE);
    BrowserHost host(settings, output);
    if (!isKnown(arguments)) {
        host.refuse(BrowserFault::EXTENSION_UNKNOWN,
                    filledIn(tr("This program serves %1, not %2."),
                             QString::fromLatin1(CHROMIUM_EXTENSION),
                             printable(arguments.join(QLatin1Char(' ')))));
        return ExitStatus::WRONG_USAGE;
    }
    host.serve();
    return ExitStatus::DONE;
}

} // namespace app
