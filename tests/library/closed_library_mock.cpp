#include "tests/library/closed_library_mock.h"

namespace
{

ClosedLibraryMock *current = nullptr;

constexpr int NO_SCRIPT = -1000;

/** Asks the mock of the running test; a call without one fails the test. */
template <typename... Parameters>
int ask(const char *name, int (ClosedLibraryMock::*function)(Parameters...),
        Parameters... arguments)
{
    if (current != nullptr)
        return (current->*function)(arguments...);
    ADD_FAILURE() << name << " called outside of any script";
    return NO_SCRIPT;
}

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
    return ask("KVO_OpenPort", &ClosedLibraryMock::openPort, port);
}

int KVO_FindIDCard(int port)
{
    return ask("KVO_FindIDCard", &ClosedLibraryMock::findIDCard, port);
}

int KVO_ReadIDCard(int port, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                   unsigned char *fp, unsigned int *fpLen, int flag)
{
    return ask("KVO_ReadIDCard", &ClosedLibraryMock::readIDCard, port, info, photo, photoLen, fp,
               fpLen, flag);
}

int KVO_ClosePort(int port)
{
    return ask("KVO_ClosePort", &ClosedLibraryMock::closePort, port);
}

int unpack(unsigned char *src, unsigned char *dst, int mode)
{
    return ask("unpack", &ClosedLibraryMock::unpack, src, dst, mode);
}
