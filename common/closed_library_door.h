#pragma once

// The one door to the two closed libraries: calls their five functions wherever they are. Nothing
// else in the library knows where they come from.
//
// A function is looked for at every call, closing the port at the call that opens it, in this
// order:
// 1. already in the process: in the executable that links this library, in another library or in a
//    preloaded one;
// 2. in the maker's shared object (file names are set when this library is configured), beside this
//    library and then by the loader's usual rules.
//
// Nothing is remembered between calls, so a host may bring or take away its own definitions between
// two reads. A shared object of the maker's stays loaded once it was needed: it may run threads of
// its own, which unloading would pull the floor from under.
//
// A thread may be cancelled in a closed function, as far as that allows it, and not while one is
// looked for.

struct CardInfoStruct;

namespace closed_library
{

/** What a function that cannot be found returns: neither success nor a reason to try again. */
constexpr int NOT_FOUND = -1;

/**
 * `KVO_OpenPort`, provided that all four reader functions are there; otherwise `NOT_FOUND` and one
 * debug line that says which function is missing and which file was looked for. Like the next
 * three, throws what the closed function throws.
 */
int openPort(int port);

/** `KVO_FindIDCard`. */
int findIDCard(int port);

/** `KVO_ReadIDCard`. Throws when it cannot be found. */
int readIDCard(int port, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
               unsigned char *fp, unsigned int *fpLen, int flag);

/** `KVO_ClosePort` as `openPort` has found it; needs no memory. */
int closePort(int port);

/**
 * `unpack`. Returns `WLT_SUCCESS` when the photo was decoded. A missing decoder (one debug line
 * says which file was looked for) and one that throws do not decode.
 */
int unpackPhoto(unsigned char *src, unsigned char *dst, int mode);

} // namespace closed_library
