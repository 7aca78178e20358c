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
