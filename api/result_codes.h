#pragma once

/**
 * @file
 * The result codes of `readIDCard`.
 */

/**
 * Every value that `readIDCard` can return. The numbers are fixed; the gaps between them are never
 * returned. `docs/result-codes.md` gives the cause and the remedy of each.
 */
enum IDCARD_RESULT : int {
    /**
     * The card was read: its record, `*cardKind` and both image strings are filled. Also returned,
     * with nothing filled and `*cardKind` untouched, when the reader delivers a kind of card that
     * it does not name or ends the read with an unexpected code; preset `*cardKind` to a value
     * outside 0 to 3 to see the difference.
     */
    IDCARD_RESULT_OK = 0,

    /** The reader port could not be opened, or the reader answered the read with 1. */
    IDCARD_RESULT_PORT_NOT_OPEN = -5,

    /**
     * The read was broken off: a closed function threw while it read, or memory ran out. When
     * memory runs out late, `*cardKind` and the first fields of the record may have been written.
     */
    IDCARD_RESULT_READ_FAILED = -23,

    /** No card was found on the reader. */
    IDCARD_RESULT_NO_CARD = -24,

    /** The compressed photo did not decode. No record and no `*cardKind` is written. */
    IDCARD_RESULT_PHOTO_NOT_DECODED = -26,

    IDCARD_RESULT_NULL_CARD_KIND = -27,    ///< `cardKind` is null
    IDCARD_RESULT_NULL_CN = -28,           ///< `cn` is null
    IDCARD_RESULT_NULL_FOREIGN_2017 = -29, ///< `f2017` is null
    IDCARD_RESULT_NULL_FOREIGN_NEW = -30,  ///< `fNew` is null
    IDCARD_RESULT_NULL_HMT = -31,          ///< `hmt` is null
    IDCARD_RESULT_NULL_FRONT_IMAGE = -39,  ///< `frontImage` is null
    IDCARD_RESULT_NULL_BACK_IMAGE = -40,   ///< `backImage` is null
};
