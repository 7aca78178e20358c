#pragma once

// How the programs of this folder end. `result_catalogue.cpp` says what each status means.

namespace app
{

enum class ExitStatus : int {
    Done = 0,
    ProgramFailed = 1,
    WrongUsage = 2,
    ReaderNotOpened = 3,
    NoCard = 4,
    ReadFailed = 5,
    PhotoNotDecoded = 6,
    FilesNotWritten = 7,
    NothingRead = 8,
    FoundWarnings = 9,
    FoundFailures = 10,
};

} // namespace app
