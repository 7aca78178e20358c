#pragma once

// The reader as the makers' library shows it: open, find, read, close, with that library's codes.

#include <optional>

#include <QString>

#include "common/card_info_struct.h"
#include "simulator/reader/card_slot.h"

namespace simulator
{

/**
 * What the simulated reader answers when it is used wrongly or its card is gone. None is a code to
 * which the makers' functions give a meaning, nor one that a caller uses for its own ends.
 */
enum VendorCode : int {
    VENDOR_WRONG_PORT = 201,       ///< the port is not 1001
    VENDOR_NOT_OPEN = 202,         ///< find, read or close without open
    VENDOR_ALREADY_OPEN = 203,     ///< open without close
    VENDOR_BAD_ENVIRONMENT = 204,  ///< the environment names a card or faults that cannot be used
    VENDOR_NO_CARD = 205,          ///< find: no card on the reader
    VENDOR_CARD_NOT_FOUND = 206,   ///< read without a successful find
    VENDOR_CARD_REMOVED = 207,     ///< read: the card has gone since it was found
    VENDOR_WRONG_ARGUMENT = 208,   ///< read: a null pointer, or a flag that is not 1
    VENDOR_SIMULATOR_FAILED = 209, ///< out of memory
    VENDOR_NO_READER = 210,        ///< open: the reader has gone
};

/** Where a read puts what it got; all as for `KVO_ReadIDCard`. */
struct VendorReadTarget {
    CardInfoStruct *info;
    unsigned char *photo;
    unsigned int *photoLength;
    unsigned char *fingerprints;
    unsigned int *fingerprintLength;
};

class VendorReader
{
public:
    /** Opens the reader; the reason goes to `problem` when the environment cannot be used. */
    int open(int port, QString *problem);
    int find(int port);
    int read(int port, const VendorReadTarget &target, int flag);
    int close(int port);

    [[nodiscard]] CardSlot &slot() { return m_slot; }

private:
    [[nodiscard]] int checkedPort(int port) const;
    int answerRead(const VendorReadTarget &target);

    CardSlot m_slot{Road::MAKERS_LIBRARY};
    bool m_open = false;
    std::optional<unsigned int> m_found; ///< the placement that a find has seen
};

} // namespace simulator
