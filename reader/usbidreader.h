#pragma once

#include <QByteArray>

#include "common/export.h"
#include "common/fp_info_type.h"
#include "reader/libusbex.h"

/**
 * Reads a card through the reader's USB protocol, without the reader maker's library.
 *
 * Construct it with the reader's ids, see that `lastError()` is 0, call `fetch_data`, give its two
 * results to `CIdData`, destroy it. After the first failure every operation returns false without
 * touching the bus; the code stays, and the next attempt needs a new object.
 *
 * Every event is one line in Qt's debug log; no line holds what a card says, but those of
 * `read_pipe81` and `read_pipe85` hold the bytes that they read. One thread uses an object at a
 * time. A write waits without limit for the reader to take it; a read gives up after 5 seconds.
 * Nothing is tried again.
 *
 * A thread may be cancelled (`pthread_cancel`, deferred) in any operation: it ends at once while a
 * write waits, and otherwise when the reader has been opened or the read has come to its end, after
 * 5 seconds at most. What it constructed gives the reader back. An object that lives on may be
 * destroyed, by any thread, and nothing else. libusb keeps a kilobyte of a write.
 */
class IDCARD_READER_EXPORT CUsbIdReader : public CLibUsbEx
{
public:
    /**
     * Opens the reader, finds the card on it and selects it. `lastError()` is 0 when `fetch_data`
     * may follow; else it is a code of opening, of `lookup` or of `select`, or
     * `USB_READER_NO_DATA` when the answer to select could not be read.
     */
    CUsbIdReader(unsigned short vid, unsigned short pid);
    ~CUsbIdReader();

    /**
     * Finds the card. Any answer other than "card found", also that of an empty reader, is
     * `USB_READER_LOOKUP_MISMATCH`; an answer that is too short counts as "card found".
     */
    bool lookup();

    /** Selects the card that `lookup` found; as lenient with a short answer. */
    bool select();

    /**
     * Fetches the selected card's record: the reader's whole answer frame of 1297, 1809 or 2321
     * bytes replaces `out`, and `fp` receives, by its length, how many fingerprints it has. The
     * checksum is not checked. On failure returns false, sets `lastError()` and leaves both alone.
     */
    bool fetch_data(QByteArray &out, FP_INFO_TYPE &fp);

    /*
     * Raw operations on the reader's four pipes, for hosts that have a use of their own for them.
     * They return whether the whole transfer succeeded, and never change `lastError()`.
     */

    /** Writes a frame head to endpoint 0x02: the preamble, then `a` and `b`. */
    bool write_pipe2(unsigned char a, unsigned char b);

    /**
     * Writes a block of `size` bytes to endpoint 0x06: `first`, `second`, then `size` - 5 bytes of
     * `data` (none when `data` is null or `size` is below 6), two bytes that are 0, and `last`.
     * What does not fit into a smaller block is left out; the last byte is always `last`.
     */
    bool write_pipe6(unsigned short size, unsigned char first, unsigned char second,
                     unsigned char *data, unsigned char last);

    /** Reads a frame head of 7 bytes from endpoint 0x81; `length` is the number in its last two. */
    bool read_pipe81(unsigned short &length);

    /** Reads `size` bytes from endpoint 0x85 and writes them to the debug log, one line each. */
    bool read_pipe85(unsigned short size);
};
