#pragma once

/**
 * @file
 * What makes a name visible to hosts.
 */

/**
 * Marks what the shared library offers to its hosts. Everything else stays hidden: the library is
 * built with hidden visibility, and its version script is made from `api/exported_names.txt`.
 */
#define IDCARD_READER_EXPORT __attribute__((visibility("default")))

/** Marks what an exported class keeps to the library: its functions that hosts cannot call. */
#define IDCARD_READER_HIDDEN __attribute__((visibility("hidden")))
