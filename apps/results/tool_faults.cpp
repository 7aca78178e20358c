#include "apps/results/tool_faults.h"

#include <algorithm>

#include "apps/process/translation.h"

namespace app
{

IDCARD_TEXTS(Results)

const std::vector<ToolFaultEntry> &toolFaultCatalogue()
{
    static const std::vector<ToolFaultEntry> entries = {
        {ToolFault::WRONG_USAGE, "TOOL_WRONG_USAGE", QT_TR_NOOP("The command line is wrong."),
         QT_TR_NOOP("Correct it; \"idcard-reader help\" describes the commands and their options."),
         ExitStatus::WRONG_USAGE},
        {ToolFault::SIMULATOR_NOT_LOADED, "TOOL_SIMULATOR_NOT_LOADED",
         QT_TR_NOOP("The simulator could not be loaded."),
         QT_TR_NOOP("Build or install libidcard_simulator.so, or name it in the environment "
                    "variable IDCARD_SIMULATOR_LIBRARY."),
         ExitStatus::PROGRAM_FAILED},
        {ToolFault::SIMULATION_REFUSED, "TOOL_SIMULATION_REFUSED",
         QT_TR_NOOP("The simulator refuses the card or the faults."),
         QT_TR_NOOP("Correct the card's description or the faults; \"idcard-reader cards\" lists "
                    "the built-in cards, \"idcard-reader read --help\" the faults."),
         ExitStatus::WRONG_USAGE},
        {ToolFault::OPTIONS_CONTRADICT, "TOOL_OPTIONS_CONTRADICT",
         QT_TR_NOOP("Two options contradict each other."), QT_TR_NOOP("Leave one of them out."),
         ExitStatus::WRONG_USAGE},
        {ToolFault::SEVERAL_READERS, "TOOL_SEVERAL_READERS",
         QT_TR_NOOP("Several USB devices could be the reader."),
         QT_TR_NOOP("Name the ids of the reader with --device."), ExitStatus::WRONG_USAGE},
        {ToolFault::CONFIGURATION_WRONG, "TOOL_CONFIGURATION_WRONG",
         QT_TR_NOOP("A configuration file has a mistake."),
         QT_TR_NOOP("Correct the file; \"idcard-reader doctor\" shows which files there are and "
                    "what they say."),
         ExitStatus::WRONG_USAGE},
        {ToolFault::FILES_NOT_WRITTEN, "TOOL_FILES_NOT_WRITTEN",
         QT_TR_NOOP("The files could not be written."),
         QT_TR_NOOP("Name a place where this user may write and where there is room; --force "
                    "replaces files that are there."),
         ExitStatus::FILES_NOT_WRITTEN},
        {ToolFault::RECORD_NOT_READ, "TOOL_RECORD_NOT_READ",
         QT_TR_NOOP("The record could not be read."),
         QT_TR_NOOP("Name a file that holds a raw card record."), ExitStatus::WRONG_USAGE},
        {ToolFault::NOT_A_RECORD, "TOOL_NOT_A_RECORD",
         QT_TR_NOOP("The bytes are not a raw card record."),
         QT_TR_NOOP("Name a file that \"idcard-reader usb --raw\" has written."),
         ExitStatus::WRONG_USAGE},
        {ToolFault::TEXT_NOT_DECODED, "TOOL_TEXT_NOT_DECODED",
         QT_TR_NOOP("The card's text could not be decoded."),
         QT_TR_NOOP("Read the card once more."), ExitStatus::NOTHING_READ},
        {ToolFault::INTERRUPTED, "TOOL_INTERRUPTED",
         QT_TR_NOOP("The wait was broken off before a card was found."),
         QT_TR_NOOP("Start again to wait for a card."), ExitStatus::NO_CARD},
        {ToolFault::READ_BROKEN_OFF, "TOOL_READ_BROKEN_OFF",
         QT_TR_NOOP("The reading in progress was broken off."),
         QT_TR_NOOP("If the reader does not answer any more, unplug it and plug it in again."),
         ExitStatus::READ_FAILED},
        {ToolFault::READ_TIMED_OUT, "TOOL_READ_TIMED_OUT",
         QT_TR_NOOP("Reading the card did not end in time."),
         QT_TR_NOOP("Lay the card flat on the middle of the reader, keep it still and read once "
                    "more; if it happens again, unplug the reader and plug it in."),
         ExitStatus::READ_TIMED_OUT},
        {ToolFault::UNKNOWN_CODE, "TOOL_UNKNOWN_CODE",
         QT_TR_NOOP("The library returned a code that this program does not know."),
         QT_TR_NOOP("Install the program and the library of the same version."),
         ExitStatus::PROGRAM_FAILED},
        {ToolFault::PROGRAM_BROKEN, "TOOL_PROGRAM_BROKEN", QT_TR_NOOP("The program is broken."),
         QT_TR_NOOP("Install it again."), ExitStatus::PROGRAM_FAILED},
    };
    return entries;
}

const ToolFaultEntry &findToolFault(ToolFault fault)
{
    const auto &entries = toolFaultCatalogue();
    return *std::find_if(entries.begin(), entries.end(),
                         [&](const ToolFaultEntry &entry) { return entry.fault == fault; });
}

} // namespace app
