#pragma once

// How the programs of this folder end. `result_catalogue.cpp` says what each status means.

namespace app
{

enum class ExitStatus : int {
    DONE = 0,
    PROGRAM_FAILED = 1,
    WRONG_USAGE = 2,
    READER_NOT_OPENED = 3,
    NO_CARD = 4,
    READ_FAILED = 5,
    PHOTO_NOT_DECODED = 6,
    FILES_NOT_WRITTEN = 7,
    NOTHING_READ = 8,
    FOUND_WARNINGS = 9,
    FOUND_FAILURES = 10,
    READ_TIMED_OUT = 11,
};

} // namespace app
