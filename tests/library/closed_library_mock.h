#pragma once

// The five closed functions, scripted by a test call by call. A call without a mock, or
// that its script does not expect, fails the test.

#include "common/closed_functions.h"

#include <gmock/gmock.h>

class ClosedLibraryMock
{
public:
    ClosedLibraryMock();
    ~ClosedLibraryMock();
    ClosedLibraryMock(const ClosedLibraryMock &) = delete;
    ClosedLibraryMock &operator=(const ClosedLibraryMock &) = delete;

    MOCK_METHOD(int, openPort, (int port));
    MOCK_METHOD(int, findIDCard, (int port));
    MOCK_METHOD(int, readIDCard,
                (int port, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                 unsigned char *fp, unsigned int *fpLen, int flag));
    MOCK_METHOD(int, closePort, (int port));
    MOCK_METHOD(int, unpack, (unsigned char *src, unsigned char *dst, int mode));
};

using StrictClosedLibrary = testing::StrictMock<ClosedLibraryMock>;
