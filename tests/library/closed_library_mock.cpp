#include "tests/library/closed_library_mock.h"

namespace
{

ClosedLibraryMock *current = nullptr;

/** The mock of the running test; a call without one fails the test. */
ClosedLibraryMock *mock(const char *function)
{
    if (current == nullptr)
        ADD_FAILURE() << function << " called outside of any script";
    return current;
}

constexpr int NO_SCRIPT = -1000;

} // namespace

ClosedLibraryMock::ClosedLibraryMock()
{
    current = this;
}

ClosedLibraryMock::~ClosedLibraryMock()
{
    current = nullptr;
}

int KVO_OpenPort(int port)
{
    ClosedLibraryMock *const library = mock("KVO_OpenPort");
    return library != nullptr ? library->openPort(port) : NO_SCRIPT;
}

int KVO_FindIDCard(int port)
{
    ClosedLibraryMock *const library = mock("KVO_FindIDCard");
    return library != nullptr ? library->findIDCard(port) : NO_SCRIPT;
}

int KVO_ReadIDCard(int port, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                   unsigned char *fp, unsigned int *fpLen, int flag)
{
    ClosedLibraryMock *const library = mock("KVO_ReadIDCard");
    return library != nullptr ? library->readIDCard(port, info, photo, photoLen, fp, fpLen, flag)
                              : NO_SCRIPT;
}

int KVO_ClosePort(int port)
{
    ClosedLibraryMock *const library = mock("KVO_ClosePort");
    return library != nullptr ? library->closePort(port) : NO_SCRIPT;
}

int unpack(unsigned char *src, unsigned char *dst, int mode)
{
    ClosedLibraryMock *const library = mock("unpack");
    return library != nullptr ? library->unpack(src, dst, mode) : NO_SCRIPT;
}
