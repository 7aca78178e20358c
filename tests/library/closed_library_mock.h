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

/** A test that scripts what the reader's library is asked, in this order and nothing else. */
class ScriptedReader : public testing::Test
{
protected:
    static constexpr int PORT = 1001;
    static constexpr int DONE = 144;

    void expectOpen(int result = DONE)
    {
        EXPECT_CALL(library, openPort(PORT)).WillOnce(testing::Return(result));
    }
    void expectFind(int result = DONE)
    {
        EXPECT_CALL(library, findIDCard(PORT)).WillOnce(testing::Return(result));
    }
    void expectFoundCard()
    {
        expectOpen();
        expectFind();
    }
    void expectClose() { EXPECT_CALL(library, closePort(PORT)).WillOnce(testing::Return(DONE)); }

    testing::InSequence inSequence;
    StrictClosedLibrary library;
};
