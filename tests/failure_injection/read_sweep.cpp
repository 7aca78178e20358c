#include "tests/failure_injection/read_sweep.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include <QDataStream>
#include <QRegularExpression>
#include <QThreadPool>

#include "tests/failure_injection/child.h"
#include "tests/failure_injection/closed_functions.h"

namespace
{

using namespace failure_injection;

/** The outputs with a mark in every one of them. */
std::unique_ptr<Reading> markedReading()
{
    auto reading = std::make_unique<Reading>();
    mark(*reading);
    return reading;
}

bool isMark(const std::string &text)
{
    return text.rfind("before ", 0) == 0;
}

/** What is wrong with a record whose fields are to be a beginning of the order, the rest marks. */
template <typename Record>
QStringList complaintsAbout(const Record &record, const Record &whole)
{
    QStringList complaints;
    bool ended = false;
    for (const auto &field : fieldsOf(record)) {
        const bool isWritten = !isMark(record.*field.member);
        if (isWritten && record.*field.member != whole.*field.member)
            complaints << QStringLiteral("%1 holds something else").arg(field.name);
        if (isWritten && ended)
            complaints << QStringLiteral("a field was written after one that was not");
        ended = ended || !isWritten;
    }
    const bool hasNoPhoto = std::all_of(std::begin(record.byPhoto), std::end(record.byPhoto),
                                        [](unsigned char byte) { return byte == 0xa5; });
    const bool hasPhoto = std::memcmp(record.byPhoto, whole.byPhoto, sizeof(whole.byPhoto)) == 0;
    if (!hasPhoto && !hasNoPhoto)
        complaints << QStringLiteral("the photo is half written");
    if (hasPhoto && ended)
        complaints << QStringLiteral("the photo was written before the fields");
    return complaints;
}

/** The row of the kind whose record is `record` of a reading. */
template <auto record>
Card cardOf(const char *name)
{
    return {name,
            [](const Reading &reading, const Reading &whole) {
                return complaintsAbout(reading.*record, whole.*record);
            },
            [](const Reading &reading, const Reading &whole) {
                return std::memcmp((reading.*record).byPhoto, (whole.*record).byPhoto,
                                   sizeof((whole.*record).byPhoto)) == 0;
            }};
}

/** What of one read with memory failing must not be. */
QStringList complaintsAboutRead(const Card &card, int result, const Reading &reading,
                                const Reading &whole)
{
    QStringList complaints = card.complaints(reading, whole);
    if (result != IDCARD_RESULT_OK && result != IDCARD_RESULT_READ_FAILED)
        complaints << QStringLiteral("the result is %1").arg(result);
    if (portIsOpen())
        complaints << QStringLiteral("the port is open");
    if (reading.cardKind != whole.cardKind && reading.cardKind != NO_KIND)
        complaints << QStringLiteral("the kind is %1").arg(reading.cardKind);
    if (result != IDCARD_RESULT_OK &&
        reading.back != "back before") // the last thing that a read writes
        complaints << QStringLiteral("the back is there in spite of a failure");
    if (result == IDCARD_RESULT_OK && (reading.front.empty() || reading.back.empty()))
        complaints << QStringLiteral("a picture is missing in spite of a success");
    return complaints;
}

QByteArray toBytes(const ReadOutcome &o)
{
    QByteArray bytes;
    QDataStream(&bytes, QIODevice::WriteOnly)
        << o.result << o.hasPhoto << o.picturesAreWhole << o.hasFailed << o.failure << o.lostBlocks
        << o.lostBlockPlaces << o.complaints;
    return bytes;
}

/** An outcome as it is before a read, where the child was lost. */
ReadOutcome fromBytes(const QByteArray &bytes)
{
    ReadOutcome o;
    QDataStream stream(bytes);
    stream >> o.result >> o.hasPhoto >> o.picturesAreWhole >> o.hasFailed >> o.failure >>
        o.lostBlocks >> o.lostBlockPlaces >> o.complaints;
    return stream.status() == QDataStream::Ok ? o : ReadOutcome();
}

/** Of `places`, those that are not in `before`. */
QStringList additions(const std::vector<std::string> &before, std::vector<std::string> places)
{
    for (const std::string &place : before) {
        const auto known = std::find(places.begin(), places.end(), place);
        if (known != places.end())
            places.erase(known);
    }
    QStringList added;
    for (const std::string &place : places)
        added << QString::fromStdString(place);
    return added;
}

/**
 * The reads of the child. What is kept after the first may be a cache or replace something older,
 * what the second adds to it is lost.
 */
ReadOutcome readTwice(const Card &card, const Reading &whole, long position, Extent extent,
                      bool withPlaces)
{
    ReadOutcome outcome;
    startAccount(withPlaces);
    std::vector<std::string> kept;
    int keptBlocks = 0;
    for (const bool isFirst : {true, false}) {
        auto reading = markedReading();
        startMemory(position, extent);
        const int result = reading->read();
        stopMemory();
        outcome.complaints << complaintsAboutRead(card, result, *reading, whole);
        if (!isFirst)
            break;
        outcome.result = result;
        outcome.hasFailed = failedAllocations() > 0;
        outcome.hasPhoto = card.hasPhoto(*reading, whole);
        outcome.picturesAreWhole = reading->front == whole.front && reading->back == whole.back;
        if (result == IDCARD_RESULT_OK && !outcome.picturesAreWhole)
            outcome.failure = QString::fromStdString(placeOfFailure());
        reading.reset();
        keptBlocks = liveBlocks();
        kept = placesOfLiveBlocks();
    }
    outcome.lostBlocks = liveBlocks() - keptBlocks;
    if (withPlaces)
        outcome.lostBlockPlaces = additions(kept, placesOfLiveBlocks());
    const auto after = markedReading();
    if (after->read() != IDCARD_RESULT_OK || after->front != whole.front ||
        after->back != whole.back)
        outcome.complaints << QStringLiteral("the next read fails or gives another picture");
    outcome.complaints << card.complaints(*after, whole);
    return outcome;
}

/** The first two reads of a process set caches up, of Qt and of the font libraries. */
Reading wholeReading(const Card &card)
{
    qputenv("IDCARD_SIMULATOR_CARD", card.name);
    QThreadPool::globalInstance()->setExpiryTimeout(0); // no thread is there when a child is made
    for (int i = 0; i < 2; ++i)
        markedReading()->read();
    const auto whole = markedReading();
    whole->read();
    QThreadPool::globalInstance()->waitForDone();
    return *whole;
}

} // namespace

const std::vector<Card> &failure_injection::cardsOfEachKind()
{
    static const std::vector<Card> cards = {
        cardOf<&Reading::cn>("resident"),
        cardOf<&Reading::hmt>("hmt-hong-kong"),
        cardOf<&Reading::f2017>("foreign-2017"),
        cardOf<&Reading::fNew>("foreign-new"),
    };
    return cards;
}

ReadOutcome failure_injection::readWithFailure(const Card &card, const Reading &whole,
                                               long position, Extent extent)
{
    const auto runRead = [&](bool withPlaces) {
        const ChildOutcome child = runInChild(
            [&] { return toBytes(readTwice(card, whole, position, extent, withPlaces)); });
        ReadOutcome outcome = fromBytes(child.report);
        if (child.ended && child.report.isEmpty())
            outcome.complaints << QStringLiteral("the child has reported nothing");
        if (!child.ended) {
            outcome.hasFailed = true;
            outcome.crash = child.place.isEmpty() ? QStringLiteral("signal %1").arg(child.signal)
                                                  : QString::fromUtf8(child.place);
        }
        return outcome;
    };
    const ReadOutcome outcome = runRead(false);
    return outcome.lostBlocks > 0 ? runRead(true) : outcome;
}

namespace
{

/** Of innermost functions the first that has a name, without its arguments, and its module. */
QString function(const QString &places)
{
    for (const QString &place : places.split(QStringLiteral(" < "))) {
        const int blank = place.indexOf(' ');
        if (blank < 0 || place.startsWith(QLatin1String("libc.so")))
            continue;
        const QString name = place.mid(blank + 1);
        return QStringLiteral("`%1` of %2").arg(name.left(name.indexOf('(')), place.left(blank));
    }
    return places;
}

void add(ReadFigures &figures, const ReadOutcome &outcome)
{
    const QString hang = QStringLiteral("hangs: ");
    ++figures.reads;
    if (outcome.crash.startsWith(hang))
        ++figures.hangs[function(outcome.crash.mid(hang.size()))];
    else if (!outcome.crash.isEmpty())
        ++figures.crashes[function(outcome.crash)];
    else if (outcome.result != IDCARD_RESULT_OK)
        ++figures.refused;
    else if (outcome.picturesAreWhole)
        ++figures.whole;
    else
        ++figures.plainer[function(outcome.failure)];
    figures.losing += outcome.lostBlockPlaces.isEmpty() ? 0 : 1;
    for (const QString &place : outcome.lostBlockPlaces)
        ++figures.losses[place.left(place.indexOf(QRegularExpression(QStringLiteral("[ +]"))))];
}

/** The first position at which a read whose memory runs out for good has copied the photo. */
long firstOfPictures(const Card &card, const Reading &whole, long allocations)
{
    long before = 0;
    long after = allocations;
    while (after - before > 1) {
        const long position = (before + after) / 2;
        const ReadOutcome outcome = readWithFailure(card, whole, position, Extent::AND_ALL_AFTER);
        (outcome.hasPhoto || !outcome.crash.isEmpty() ? after : before) = position;
    }
    return after;
}

} // namespace

ReadFigures failure_injection::sweepRead(const Card &card, Extent extent, const Strides &strides)
{
    ReadFigures figures;
    const Reading whole = wholeReading(card);
    auto reading = markedReading();
    startMemory(0);
    reading->read();
    figures.allocations = stopMemory();
    figures.beforePictures = firstOfPictures(card, whole, figures.allocations) - 1;
    for (long position = 1; position <= figures.allocations;
         position +=
         position > figures.beforePictures ? strides.painting : strides.beforePictures) {
        const ReadOutcome outcome = readWithFailure(card, whole, position, extent);
        add(figures, outcome);
        for (const QString &complaint : outcome.complaints)
            figures.complaints << QStringLiteral("%1, allocation %2: %3")
                                      .arg(QLatin1String(card.name))
                                      .arg(position)
                                      .arg(complaint);
    }
    return figures;
}
