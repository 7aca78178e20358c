#pragma once

/**
 * @file
 * The amounts of fingerprint data.
 */

#include <cstdint>

/**
 * How much fingerprint data a card carries. One fingerprint template is 512 bytes. The order, "two"
 * first, is that of the reader and must not be changed.
 */
enum FP_INFO_TYPE : std::int32_t {
    FP_INFO_TWO = 0,  ///< two prints, 1024 bytes
    FP_INFO_ONE = 1,  ///< one print, 512 bytes
    FP_INFO_NONE = 2, ///< no print, 0 bytes
};
