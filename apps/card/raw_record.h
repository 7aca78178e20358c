#pragma once

// Whether bytes are a raw card record, the reader's answer frame: the same rules by which
// `CUsbIdReader::fetch_data` takes one, explained to people. Reads and writes nothing but its
// arguments.

#include <QByteArray>
#include <QString>
#include <QStringList>

#include "common/fp_info_type.h"
#include "reader/reader_frames.h"

namespace app
{

/** One byte more than the longest record: enough to see that something is not one. */
constexpr int RAW_RECORD_READ_LIMIT = reader_frames::READ_ANSWER_MAX_SIZE + 1;

struct RawRecordCheck {
    /** Why it is not a record: offset, what was expected and what was found. Empty for a record. */
    QString problem;
    /** What is odd about a record and does not keep it from being decoded. */
    QStringList warnings;
    FP_INFO_TYPE prints = FP_INFO_NONE; ///< of a record

    bool isRecord() const { return problem.isEmpty(); }
};

RawRecordCheck checkRawRecord(const QByteArray &bytes);

} // namespace app
