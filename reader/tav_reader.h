#pragma once

// One read through the reader maker's closed library: the constructor opens the port, the
// destructor closes it. An object serves one read and is not shared. Its messages go to the
// wide-character standard output in the user's locale, unlike the rest of the library, which logs.

#include <cstdint>

struct CardInfoStruct;

class CTavReader
{
public:
    /** Results of `FetchCardData` that are its own; others are those of `KVO_ReadIDCard`. */
    enum Result : int {
        FETCHED = 144,
        PORT_NOT_OPEN = 1,
        EARLIER_READ_FAILED = 65,
        NO_CARD = -4,
    };

    enum State : std::int32_t {
        CONSTRUCTING = 0,
        OPENING = 1,
        OPEN = 2,
        READ = 3,
        NEVER_OPENED = -1,
        OPEN_FAILED = -2,
        READ_FAILED = -3,
    };

    /** Sets the process's locale from the environment and opens the port. Never fails outward. */
    CTavReader();
    ~CTavReader();
    CTavReader(const CTavReader &) = delete;
    CTavReader &operator=(const CTavReader &) = delete;

    /**
     * Finds the card and reads it into the caller's zero-filled buffers: `photo` has room for 38862
     * bytes, `fp` for 1024. While the reader answers that reading may succeed if tried again, it is
     * tried again every 50 ms, without limit. Returns a `Result` or the failure code of
     * `KVO_ReadIDCard`.
     *
     * A closed function that throws has failed: finding gives `NO_CARD`, reading
     * `EARLIER_READ_FAILED`.
     */
    int FetchCardData(CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                      unsigned char *fp, unsigned int *fpLen);

    State state() const { return m_state; }

private:
    State m_state = CONSTRUCTING;
};
