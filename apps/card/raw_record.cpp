#include "apps/card/raw_record.h"

#include <algorithm>
#include <array>

#include "apps/process/translation.h"
#include "common/texts.h"
#include "reader/frame_bytes.h"

namespace app
{

namespace
{

using namespace reader_frames;

IDCARD_TEXTS(Record)

template <std::size_t Size>
QByteArray bytesOf(const std::array<unsigned char, Size> &bytes, int first, int count)
{
    return {reinterpret_cast<const char *>(bytes.data()) + first, count};
}

QString hex(const QByteArray &bytes)
{
    return QLatin1String(bytes.toHex(' ').toUpper());
}

/** A part of the head and all its valid values. */
struct HeadPart {
    const char *name;
    int offset;
    QList<QByteArray> allowed;

    QByteArray in(const QByteArray &record) const
    {
        return record.mid(offset, allowed.first().size());
    }

    QString problemIn(const QByteArray &record) const
    {
        if (allowed.contains(in(record)))
            return {};
        QStringList expected;
        for (const QByteArray &bytes : allowed)
            expected << hex(bytes);
        return filledIn(tr("at offset %1 (%2) it has %3, where %4 was expected."),
                        QString::number(offset), tr(name), hex(in(record)),
                        expected.join(tr(" or ")));
    }
};

/** What the head of a record of `size` bytes holds, in the order in which it is checked. */
std::array<HeadPart, 6> headOf(int size)
{
    constexpr int LENGTHS = 2; // bytes of a length
    constexpr int STATUS = 3;
    constexpr int TEXT_LENGTH = STATUS_OFFSET + STATUS;
    constexpr int PHOTO_LENGTH = TEXT_LENGTH + LENGTHS;
    return {{
        {QT_TR_NOOP("preamble"), 0, {bytesOf(PREAMBLE, 0, LENGTH_OFFSET)}},
        {QT_TR_NOOP("status"), STATUS_OFFSET, {bytesOf(READ_ANSWER_STATUS, 0, STATUS)}},
        {QT_TR_NOOP("length of the text"),
         TEXT_LENGTH,
         {bytesOf(READ_ANSWER_STATUS, STATUS, LENGTHS)}},
        {QT_TR_NOOP("length of the photo"),
         PHOTO_LENGTH,
         {bytesOf(READ_ANSWER_STATUS, STATUS + LENGTHS, LENGTHS)}},
        {QT_TR_NOOP("number of bytes that follow it"),
         LENGTH_OFFSET,
         {frameNumber(size - HEAD_SIZE)}},
        {QT_TR_NOOP("length of the fingerprints"),
         PRINT_LENGTH_OFFSET,
         {frameNumber(0), frameNumber(PRINT_SIZE), frameNumber(2 * PRINT_SIZE)}},
    }};
}

QString problemOfSize(int size)
{
    QStringList sizes;
    for (const ReadAnswerSize &known : READ_ANSWER_SIZES)
        sizes.prepend(QString::number(known.size));
    const QString expected =
        sizes.mid(0, sizes.size() - 1).join(tr(", ")) + tr(" or ") + sizes.last();
    if (size > READ_ANSWER_MAX_SIZE) {
        return tr("it goes on at offset %1, where a record of %2 bytes has ended.")
            .arg(READ_ANSWER_MAX_SIZE)
            .arg(expected);
    }
    return tr("it ends at offset %1, where a record of %2 bytes does not.").arg(size).arg(expected);
}

QStringList warningsOf(const QByteArray &record)
{
    QStringList warnings;
    const QByteArray prints = frameNumber(record.size() - READ_ANSWER_SIZE_NO_PRINT);
    const QByteArray declared = record.mid(PRINT_LENGTH_OFFSET, prints.size());
    if (declared != prints) {
        warnings << filledIn(tr("at offset %1 (length of the fingerprints) it has %2, where %3 was "
                                "expected; its size decides."),
                             QString::number(PRINT_LENGTH_OFFSET), hex(declared), hex(prints));
    }
    const QByteArray sum(1, frameChecksum(record, record.size() - CHECKSUM_SIZE));
    if (!record.endsWith(sum)) {
        warnings << filledIn(tr("at offset %1 (checksum) it has %2, where %3 was expected; "
                                "something in it is not as the reader sent it."),
                             QString::number(record.size() - CHECKSUM_SIZE),
                             hex(record.right(CHECKSUM_SIZE)), hex(sum));
    }
    return warnings;
}

} // namespace

RawRecordCheck checkRawRecord(const QByteArray &bytes)
{
    RawRecordCheck check;
    const auto *const known =
        std::find_if(READ_ANSWER_SIZES.begin(), READ_ANSWER_SIZES.end(),
                     [&](const ReadAnswerSize &answer) { return answer.size == bytes.size(); });
    if (known == READ_ANSWER_SIZES.end()) {
        check.problem = problemOfSize(bytes.size());
        return check;
    }
    for (const HeadPart &part : headOf(bytes.size())) {
        check.problem = part.problemIn(bytes);
        if (!check.problem.isEmpty())
            return check;
    }
    check.prints = known->prints;
    check.warnings = warningsOf(bytes);
    return check;
}

} // namespace app
