#pragma once

/**
 * @file
 * Reads one Chinese identity document with the desktop card reader.
 *
 *     unsigned int kind = 99;
 *     _tagIDCARD_INFO_ALL_CN cn;
 *     _tagIDCARD_INFO_ALL_FOREIGN_2017 f2017;
 *     _tagIDCARD_INFO_ALL_FOREIGN_NEW fNew;
 *     _tagIDCARD_INFO_ALL_HMT hmt;
 *     std::string front, back;
 *     int result = readIDCard(&kind, &cn, &f2017, &fNew, &hmt, &front, &back);
 */

#include <string>

#include "api/result_codes.h"
#include "common/card_records.h"
#include "common/export.h"

#if defined(__clang__)
#pragma clang diagnostic push
// The function has C linkage for its plain name; callers are still C++.
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif

extern "C" {

/**
 * Opens the reader, reads the card lying on it, closes the reader and fills the record of the
 * card's kind.
 *
 * All seven pointers must be non-null, though only one record is filled. Everything they point to
 * stays the caller's; strings are replaced whole, never appended to.
 *
 * @param cardKind   receives an `IDCARD_KIND`, before the record's first field is written
 * @param cn         filled for a resident identity card
 * @param f2017      filled for a foreigner's card of the 2017 edition
 * @param fNew       filled for a foreigner's card of the new edition
 * @param hmt        filled for a permit for Hong Kong, Macao and Taiwan residents
 * @param frontImage receives the picture of the card's front
 * @param backImage  receives the picture of the card's back
 *
 * Both pictures are base64 text of a JPEG file, as `render/makecardimg.h` says. The back of a
 * permit whose number begins with none of "81", "82" and "83" is an empty text, and so is a picture
 * where Qt's JPEG plug-in is missing or cannot be loaded, for instance because the process has no
 * free file descriptor.
 *
 * @return an `IDCARD_RESULT`: `IDCARD_RESULT_OK` or a negative code. The arguments are checked
 *         first, in the order -27, -28, -29, -30, -31, -39, -40; the first null pointer decides
 *         and nothing is touched. No failure but exhausted memory leaves a record half written.
 *         No exception leaves the call: one that a closed function throws counts as that
 *         function's failure (opening -5, finding -24, reading -23, decoding the photo -26), and
 *         exhausted memory as -23. The port is closed in every case.
 *
 * The call returns when the card has been read. While the reader reports a read that may succeed
 * if tried again, it tries again every 50 ms without limit.
 *
 * A thread may be cancelled in the call (`pthread_cancel`, deferred, as threads are unless they ask
 * for another type). It ends while it waits for the reader: in the pause between two tries, and in
 * a closed function at any place where the C library ends threads. A port that was open is closed;
 * a port that was still being opened was none yet, and is left as the closed function leaves it.
 * Once the card has been read, and while the port is being closed, the cancellation waits until the
 * call has returned.
 *
 * Call it in the GUI thread of a running Qt GUI application that has a screen: the pictures ask for
 * the screen without looking whether there is one, and crash where there is none. They also switch
 * `Qt::AA_EnableHighDpiScaling` on, about which Qt warns in its log. Calls must not overlap: every
 * call opens the same reader port, and the library takes no lock. Each call sets the locale of the
 * process from the environment (`setlocale(LC_ALL, "")`) and prints a line to the wide-character
 * standard output when the port does not open or a read fails. A C standard output takes either
 * bytes or wide characters: in a program that printed bytes before, such a line comes out garbled,
 * and in one that printed nothing yet, the bytes that it prints afterwards are lost. Diagnostics go
 * to Qt's log, and hold nothing of the card; two decoders of `CIdData` write personal data there.
 *
 * The library may be unloaded while the application runs, with no call under way. The makers'
 * libraries, once they were needed, stay until the process ends.
 */
IDCARD_READER_EXPORT int readIDCard(unsigned int *cardKind, _tagIDCARD_INFO_ALL_CN *cn,
                                    _tagIDCARD_INFO_ALL_FOREIGN_2017 *f2017,
                                    _tagIDCARD_INFO_ALL_FOREIGN_NEW *fNew,
                                    _tagIDCARD_INFO_ALL_HMT *hmt, std::string *frontImage,
                                    std::string *backImage);

/** Returns "version:1.5.0". May be called from any thread. */
IDCARD_READER_EXPORT std::string getSDKVersion();

} // extern "C"

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

#if defined(IDCARD_READER_STRING_CHECK) && !defined(IDCARD_READER_NO_STRING_CHECK)
#include "common/country_code_list.h"

/**
 * The name of `readIDCard` does not show which of the two `std::string`s of the C++ library a host
 * was built with, and that of the country table does: with this reference to it a host of the other
 * one (`_GLIBCXX_USE_CXX11_ABI=0`) is not linked, where its first call would have crashed.
 *
 * What finds the library for a host that links it (CMake, pkg-config, qmake) defines
 * `IDCARD_READER_STRING_CHECK`. A host that takes its flags from there and loads the library with
 * `dlopen` defines `IDCARD_READER_NO_STRING_CHECK`, too.
 */
static const void *volatile idcardReaderStringCheck = &COUNTRY_CODE_LIST;

/** A linker that drops what nothing uses (`--gc-sections`) keeps what is run at the start. */
[[gnu::constructor]] static void keepIdcardReaderStringCheck()
{
    static_cast<void>(idcardReaderStringCheck);
}
#endif
