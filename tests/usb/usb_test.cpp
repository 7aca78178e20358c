#include "tests/usb/usb_test.h"

#include <chrono>
#include <thread>

#include <unistd.h>

#include <QDir>

#include <libusb.h>

QByteArray frames::readAnswer(int printBytes)
{
    QByteArray frame = QByteArray::fromHex("AAAAAA966900000000900100040000"
                                           "00");
    for (int i = 0; i < 256 + 1024 + printBytes; ++i)
        frame += static_cast<char>(i * 7 + i / 251);
    const int length = frame.size() + 1 - 7;
    frame[5] = static_cast<char>(length / 256);
    frame[6] = static_cast<char>(length % 256);
    frame[14] = static_cast<char>(printBytes / 256);
    frame[15] = static_cast<char>(printBytes % 256);
    unsigned char checksum = 0;
    for (int i = 5; i < frame.size(); ++i)
        checksum ^= static_cast<unsigned char>(frame.at(i));
    frame += static_cast<char>(checksum);
    return frame;
}

namespace usb_test
{

namespace
{

constexpr std::chrono::milliseconds CLOSE_LIMIT{1000};
constexpr std::chrono::milliseconds CLOSE_PAUSE{2};

QMap<int, QString> openDescriptors()
{
    const QDir folder(QStringLiteral("/proc/self/fd"));
    QMap<int, QString> descriptors;
    for (const QString &entry :
         folder.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)) {
        char target[4096];
        const ssize_t size = readlink(qPrintable(folder.filePath(entry)), target, sizeof(target));
        if (size > 0) // else it was the folder's own
            descriptors[entry.toInt()] = QString::fromLocal8Bit(target, static_cast<int>(size));
    }
    return descriptors;
}

QStringList filesHere()
{
    return QDir().entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden | QDir::System);
}

} // namespace

Lines operator+(Lines first, const Lines &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

ProcessAccount::ProcessAccount() : m_descriptors(openDescriptors()), m_files(filesHere()) {}

QStringList ProcessAccount::additions() const
{
    const auto limit = std::chrono::steady_clock::now() + CLOSE_LIMIT;
    QMap<int, QString> descriptors = openDescriptors();
    while (descriptors.size() > m_descriptors.size() + m_allowed &&
           std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(CLOSE_PAUSE);
        descriptors = openDescriptors();
    }
    QStringList additions;
    if (descriptors.size() <= m_descriptors.size() + m_allowed)
        descriptors.clear();
    for (auto it = descriptors.cbegin(); it != descriptors.cend(); ++it)
        if (m_descriptors.value(it.key()) != it.value())
            additions << QStringLiteral("descriptor %1 is open: %2")
                             .arg(QString::number(it.key()), it.value());
    for (const QString &file : filesHere())
        if (!m_files.contains(file))
            additions << QStringLiteral("file \"%1\" was left").arg(file);
    return additions;
}

QStringList logComplaints(const std::vector<MessageLog::Message> &log, const Lines &expected)
{
    QStringList complaints;
    for (std::size_t i = 0; i < std::max(log.size(), expected.size()); ++i) {
        const std::string said = i < log.size() ? log[i].text : "(nothing)";
        const std::string wanted = i < expected.size() ? expected[i] : "(nothing)";
        if (said != wanted || (i < log.size() && i >= expected.size()))
            complaints << QStringLiteral("log line %1 is \"%2\" instead of \"%3\"")
                              .arg(i + 1)
                              .arg(QString::fromStdString(said), QString::fromStdString(wanted));
        if (i < log.size() && (log[i].type != QtDebugMsg || log[i].category != "default"))
            complaints << QStringLiteral("log line %1 is not a debug line of category \"default\"")
                              .arg(i + 1);
    }
    return complaints;
}

bool warmUp()
{
    ScriptedDevice device;
    EmulatedBus bus;
    bus.add(device);
    libusb_context *context = nullptr;
    if (libusb_init(&context) != 0)
        return false;
    libusb_device_handle *const handle = libusb_open_device_with_vid_pid(
        context, simulator::DEFAULT_READER_IDS.vendor, simulator::DEFAULT_READER_IDS.product);
    if (handle != nullptr)
        libusb_close(handle);
    libusb_exit(context);
    return handle != nullptr;
}

UsbTest::UsbTest()
{
    static const bool isWarm = warmUp();
    EXPECT_TRUE(isWarm) << "a first device could not be opened";
    m_bus = std::make_unique<EmulatedBus>();
    startAccount();
}

UsbTest::~UsbTest() = default;

void UsbTest::expectLog(const Lines &lines)
{
    m_expectedLog = m_expectedLog + lines;
}

Lines UsbTest::takeLog()
{
    Lines texts = m_log.texts();
    texts.erase(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(m_taken));
    m_taken += texts.size();
    return texts;
}

void UsbTest::add(ScriptedDevice &device, const NodeTraits &traits)
{
    m_bus->add(device, traits);
    startAccount();
}

void UsbTest::TearDown()
{
    QStringList complaints = m_bus->leftOvers();
    for (const auto &device : m_devices)
        complaints << device->complaints();
    auto log = m_log.messages();
    log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(m_taken));
    complaints << logComplaints(log, m_expectedLog);
    complaints << m_account.additions();
    const QString folder = m_bus->folder();
    m_bus.reset();
    if (QDir(folder).exists())
        complaints << QStringLiteral("the bus has left its folder behind");
    for (const QString &complaint : complaints)
        ADD_FAILURE() << complaint.toStdString();
}

void expectReady(ScriptedDevice &device)
{
    device.expectWrite(0x02, frames::LOOKUP)
        .expectRead(0x81, frames::LOOKUP_ANSWER.size(), frames::LOOKUP_ANSWER)
        .expectWrite(0x02, frames::SELECT)
        .expectRead(0x81, frames::SELECT_ANSWER.size(), frames::SELECT_ANSWER);
}

} // namespace usb_test
