#pragma once

// What becomes of a card read for every fault of a reader on USB: the table that the sweep runs.

#include <ostream>
#include <string>
#include <vector>

#include <QString>
#include <QStringList>

#include "tests/usb/usb_test.h"

namespace usb_test
{

/** When a read comes to its end. */
enum class End {
    AT_ONCE,
    LATE,      ///< the reader takes its time, longer than a read would wait
    GIVES_UP,  ///< the time limit of a read is over
    UNPLUGGED, ///< not before the reader is unplugged
};

/** Milliseconds that a command is kept waiting: longer than a read waits. */
constexpr int LONG_DELAY_MS = 6000;

/** One fault, with all arguments that have the same effect. */
struct FaultCase {
    QString fault;         ///< as in the vocabulary, without an argument
    QStringList arguments; ///< one read for each; an empty one means none
    QString argumentText;  ///< the arguments, for a reader
    int code;
    /** The whole log; {N} stands for the argument. */
    Lines log;
    End end = End::AT_ONCE;
    /** How often a node is opened in vain. */
    int failedOpens = 0;
};

std::vector<FaultCase> faultCases();

/** A fault by which a read fails: what every program says of it. */
struct Failure {
    const char *fault; ///< with its argument
    int code;          ///< the same as in `faultCases`
    const char *constant;
    int exitStatus;      ///< of the tool
    const char *summary; ///< part of it

    /** As programs write it: "-7 (NAME)". */
    std::string codeText() const;
};
void PrintTo(const Failure &failure, std::ostream *stream);

/** At least one for every code of a fault. */
const std::vector<Failure> &failures();

/** The log of a card read that succeeds. */
Lines wholeRead();

} // namespace usb_test
