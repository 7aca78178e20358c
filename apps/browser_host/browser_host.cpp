#include "apps/browser_host/browser_host.h"

#include <array>
#include <cerrno>
#include <memory>

#include <QCoreApplication>
#include <QJsonDocument>

#include <unistd.h>

#include "apps/browser_host/browser_failure.h"
#include "apps/browser_host/frames.h"
#include "apps/browser_host/request.h"
#include "apps/process/json_object.h"
#include "apps/process/readable_notifier.h"
#include "apps/process/tool_run.h"
#include "apps/process/translation.h"
#include "apps/terminal/text_layout.h"
#include "apps/web_sites/last_answer.h"
#include "apps/web_sites/origin_list.h"
#include "common/texts.h"

namespace app
{

namespace
{

IDCARD_TEXTS(Browser)

constexpr int MS_PER_SECOND = 1000;

/** Which extension may ask: the last word of the command line, as the browser says it. */
const QString CHROMIUM_EXTENSION = QStringLiteral("chrome-extension://" IDCARD_EXTENSION_ID "/");
const QString FIREFOX_EXTENSION = QStringLiteral(IDCARD_FIREFOX_ID);

bool isKnown(const QStringList &arguments)
{
    return arguments == QStringList{CHROMIUM_EXTENSION} ||
           (arguments.size() == 2 && arguments.last() == FIREFOX_EXTENSION); // after its host file
}

QStringList toolArguments(const Request &request)
{
    QStringList arguments = {QStringLiteral("read"), QStringLiteral("--json"),
                             QStringLiteral("--timeout"), QString::number(request.timeoutSeconds)};
    if (!request.include.isEmpty())
        arguments << QStringLiteral("--inline") << request.include.join(QLatin1Char(','));
    return arguments;
}

class BrowserHost
{
public:
    BrowserHost(const HostSettings &settings, Output *output)
        : m_settings(settings), m_output(output)
    {
    }

    void takeInput()
    {
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count == 0 || (count < 0 && errno != EINTR))
            QCoreApplication::quit();
        // What follows a request that is too long is dropped, but taken: a browser that could not
        // write all of it would not read the answer either.
        if (count <= 0 || m_frames.isTooLong())
            return;
        m_frames.take(QByteArray(buffer.data(), static_cast<int>(count)));
        while (const auto body = m_frames.next())
            takeRequest(*body);
        if (m_frames.isTooLong())
            refuse(BrowserFault::REQUEST_WRONG,
                   tr("A request has at most %1 bytes.").arg(FrameReader::LONGEST_REQUEST));
    }

    void refuse(BrowserFault fault, const QString &cause)
    {
        send(JsonObject{{"error", toJson(browserFailure(fault, cause))}});
    }

private:
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
        const OriginList list = readOriginList(m_settings.originList, m_settings.listOwner);
        if (!request.problem.isEmpty())
            refuse(BrowserFault::REQUEST_WRONG, request.problem);
        else if (!list.mistake.isEmpty())
            refuse(BrowserFault::LIST_REFUSED, list.mistake);
        else if (!list.origins.contains(request.origin))
            refuse(
                BrowserFault::ORIGIN_NOT_LISTED,
                filledIn(tr("%1 is not in %2."), printable(request.origin), m_settings.originList));
        else
            startTool(request);
    }

    void startTool(const Request &request)
    {
        m_tool = std::make_unique<ToolRun>(
            nullptr, [this](ToolRun::End end, const QByteArray &output) { answer(end, output); });
        m_tool->setLanguage(QString(request.language).replace(QLatin1Char('-'), QLatin1Char('_')));
        m_tool->run(toolArguments(request),
                    request.timeoutSeconds * MS_PER_SECOND + m_settings.graceMs, m_settings.tool);
    }

    void answer(ToolRun::End end, const QByteArray &output)
    {
        const bool hasStarted = m_tool->hasStarted();
        const QString how = m_tool->howItEnded();
        m_tool.release()->deleteLater();
        const QJsonObject answer = QJsonDocument::fromJson(output).object();
        if (!hasStarted)
            refuse(BrowserFault::TOOL_NOT_STARTED, how);
        else if (output.size() > LONGEST_ANSWER)
            refuse(BrowserFault::ANSWER_TOO_LONG,
                   tr("It is more than %1 bytes.").arg(LONGEST_ANSWER));
        else if (end == ToolRun::End::TIMED_OUT)
            refuse(BrowserFault::TOOL_HANGS, tr("It went on after the time limit and was ended."));
        else if (end != ToolRun::End::DONE || answer.isEmpty())
            refuse(BrowserFault::TOOL_BROKEN, how);
        else
            send(answer);
    }

    void send(const QJsonObject &answer)
    {
        if (!m_output->write(frameOf(QJsonDocument(answer).toJson(QJsonDocument::Compact))))
            QCoreApplication::quit();
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
    QString m_origin;                ///< of the last request
};

} // namespace

ExitStatus serveBrowser(const QStringList &arguments, const HostSettings &settings, Output *output)
{
    BrowserHost host(settings, output);
    if (!isKnown(arguments)) {
        host.refuse(BrowserFault::EXTENSION_UNKNOWN,
                    filledIn(tr("This program serves %1, not %2."), CHROMIUM_EXTENSION,
                             printable(arguments.join(QLatin1Char(' ')))));
        return ExitStatus::WRONG_USAGE;
    }
    const ReadableNotifier input(STDIN_FILENO, [&host] { host.takeInput(); });
    QCoreApplication::exec();
    return ExitStatus::DONE;
}

} // namespace app
