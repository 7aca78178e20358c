// idcard-virtual-reader: a simulated card reader that is attached over USB/IP, and the lines of
// standard input that steer it.

#include <array>
#include <optional>

#include <QCoreApplication>

#include "apps/process/interruption.h"
#include "apps/process/locale.h"
#include "apps/process/output.h"
#include "apps/process/program_name.h"
#include "apps/process/readable_notifier.h"
#include "apps/process/standard_streams.h"
#include "apps/process/translation.h"
#include "apps/virtual_reader/line_input.h"
#include "apps/virtual_reader/reader_console.h"
#include "apps/virtual_reader/virtual_reader_options.h"
#include "simulator/usbip/usbip_server.h"

namespace
{

using namespace app;

IDCARD_TEXTS(VirtualReader)

// Qt takes its own arguments out of the ones it gets; this program's are not among them.
std::array<char, 22> programName = {"idcard-virtual-reader"};
std::array<char *, 2> qtArguments = {programName.data(), nullptr};
int qtArgumentCount = 1;

class VirtualReaderProgram
{
public:
    VirtualReaderProgram(const VirtualReaderOptions &options, Output *output)
        : m_options(options), m_output(output), m_reader({}, options.ids),
          m_server(m_reader, printMessage),
          m_console(m_reader, [this] { return m_server.isAttached(); })
    {
    }

    ExitStatus run()
    {
        const QString refused = prepareReader();
        if (!refused.isEmpty()) {
            printMessage(refused);
            return ExitStatus::WRONG_USAGE;
        }
        const QString problem = m_server.listen(m_options.address, m_options.port);
        if (!problem.isEmpty()) {
            printMessage(
                tr("Listening on %1 port %2 failed: %3. End the program that uses the port, or "
                   "choose another with --port or another address of this machine with --listen.")
                    .arg(m_options.address.toString())
                    .arg(m_options.port)
                    .arg(translatedSystemText(problem)));
            return ExitStatus::PROGRAM_FAILED;
        }
        warnOfOthers();
        return serve();
    }

private:
    QString prepareReader()
    {
        QString problem;
        if (!m_options.card.isEmpty())
            problem = m_console.putCard(m_options.card);
        if (!problem.isEmpty())
            return tr("The card of --card is refused: %1").arg(problem);
        if (!m_options.faults.isEmpty())
            problem = m_console.setFaults(m_options.faults);
        if (!problem.isEmpty())
            return tr("The faults of --fault are refused: %1").arg(problem);
        const QString hidden = m_console.hiddenFaults();
        if (!hidden.isEmpty())
            printMessage(tr("The faults are set, %1.").arg(hidden));
        return {};
    }

    void warnOfOthers() const
    {
        if (!m_options.address.isLoopback()) {
            printMessage(
                tr("Warning: %1 is not a loopback address. Anyone who reaches it can attach the "
                   "reader, without a password; listen on 127.0.0.1 to prevent that.")
                    .arg(m_options.address.toString()));
        }
    }

    ExitStatus serve()
    {
        catchInterruption(ExitStatus::DONE);
        const ReadableNotifier interruption(interruptionDescriptor(),
                                            [] { QCoreApplication::quit(); });
        print(QStringLiteral("ok listening on %1 port %2")
                  .arg(m_server.address().toString())
                  .arg(m_server.port()));
        const LineInput input([this](const LineSplitter::Line &line) { carryOut(line); },
                              [this] {
                                  if (m_options.endsWithInput)
                                      quit();
                              });
        if (!m_isQuitting && !isInterrupted())
            QCoreApplication::exec();
        return m_status;
    }

    void carryOut(const LineSplitter::Line &line)
    {
        if (m_isQuitting)
            return;
        if (line.isTooLong) {
            print(QStringLiteral("error: ") +
                  tr("the line is longer than %1 bytes; give a shorter one")
                      .arg(LineSplitter::LONGEST_LINE));
            return;
        }
        const QString answer = m_console.answer(QString::fromLocal8Bit(line.text));
        if (!answer.isEmpty())
            print(answer);
        m_server.deviceChanged();
        if (m_console.wantsToQuit())
            quit();
    }

    void print(const QString &line)
    {
        if (!m_output->write(line.toLocal8Bit() + '\n')) {
            m_status = ExitStatus::PROGRAM_FAILED; // the caller reports why
            quit();
        }
    }

    void quit()
    {
        m_isQuitting = true;
        QCoreApplication::quit();
    }

    const VirtualReaderOptions &m_options;
    Output *m_output;
    simulator::VirtualReader m_reader;
    simulator::UsbipServer m_server;
    ReaderConsole m_console;
    bool m_isQuitting = false;
    ExitStatus m_status = ExitStatus::DONE;
};

ExitStatus run(const QStringList &arguments, Output *output)
{
    const QCoreApplication application(qtArgumentCount, qtArguments.data());
    translateApplication();
    const CommandLine<VirtualReaderOptions> line = parseVirtualReaderArguments(arguments);
    if (line.options)
        return VirtualReaderProgram(*line.options, output).run();
    return answer(line.problem, line.text, output);
}

} // namespace

int main(int argc, char **argv)
{
    setProgramName(VIRTUAL_READER_NAME);
    Output output;
    installMessageHandler();
    useEncodingOfLocale();
    const ExitStatus status = run(argumentsOf(argc, argv), &output);
    return static_cast<int>(closedWith(status, &output));
}
