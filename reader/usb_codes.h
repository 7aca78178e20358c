#pragma once

/**
 * @file
 * The failure codes of the USB road.
 */

/**
 * The failure codes of the USB road, as `CLibUsbEx::lastError()` returns them: -2 to -9 from
 * reaching the reader, the others from talking to it.
 */
enum USB_READER_CODE : int {
    USB_READER_OK = 0,                     ///< the reader is ready
    USB_READER_INIT_FAILED = -2,           ///< libusb could not be set up
    USB_READER_NO_DEVICE_LIST = -3,        ///< the devices could not be listed
    USB_READER_NO_DESCRIPTOR = -4,         ///< a device ahead of the reader could not be described
    USB_READER_OPEN_FAILED = -5,           ///< the reader is there and could not be opened
    USB_READER_NO_PERMISSION = -6,         ///< this user may not open the reader's device node
    USB_READER_NOT_FOUND = -7,             ///< no device with these ids
    USB_READER_CLAIM_FAILED = -8,          ///< interface 0 could not be claimed: it is in use
    USB_READER_RESET_FAILED = -9,          ///< the reader could not be reset
    USB_READER_LOOKUP_MISMATCH = -10,      ///< lookup: not the expected answer; no card
    USB_READER_LOOKUP_READ_FAILED = -11,   ///< lookup: the answer could not be read
    USB_READER_LOOKUP_WRITE_FAILED = -12,  ///< lookup: the command was not taken, or not whole
    USB_READER_SELECT_MISMATCH = -13,      ///< select: not the expected answer
    USB_READER_SELECT_READ_FAILED = -14,   ///< select: the answer could not be read
    USB_READER_SELECT_WRITE_FAILED = -15,  ///< select: the command was not taken, or not whole
    USB_READER_DATA_LENGTH_INVALID = -16,  ///< read: no frame is as long as the answer
    USB_READER_DATA_PREAMBLE_WRONG = -17,  ///< read: the answer does not begin as a frame
    USB_READER_DATA_STATUS_WRONG = -18,    ///< read: status or length of a block wrong
    USB_READER_DATA_LENGTH_MISMATCH = -19, ///< read: the length field disagrees with the answer
    USB_READER_DATA_PRINTS_INVALID = -20,  ///< read: fingerprint length not 0, 512 or 1024
    USB_READER_DATA_READ_FAILED = -21,     ///< read: the answer could not be read, or not kept
    USB_READER_DATA_WRITE_FAILED = -22,    ///< read: the command was not taken, or not whole
    USB_READER_NO_DATA = -24,              ///< the card was found and gave no data
};
