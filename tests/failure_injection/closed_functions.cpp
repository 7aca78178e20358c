// The five closed functions of this program: those of the simulator's library, which never lack
// memory, and an account of the port.

#include "tests/failure_injection/closed_functions.h"

#include <dlfcn.h>

#include "common/closed_functions.h"
#include "tests/failure_injection/failing_memory.h"

namespace
{

bool isOpen = false;

template <typename Function>
Function *simulators(const char *name)
{
    static void *const library =
        dlopen(IDCARD_BUILD_LIB_DIR "/libidcard_simulator.so", RTLD_NOW | RTLD_LOCAL);
    return reinterpret_cast<Function *>(dlsym(library, name));
}

} // namespace

bool failure_injection::portIsOpen()
{
    return isOpen;
}

int KVO_OpenPort(int port)
{
    const failure_injection::MemoryPause pause;
    isOpen = true;
    return simulators<decltype(KVO_OpenPort)>("KVO_OpenPort")(port);
}

int KVO_FindIDCard(int port)
{
    const failure_injection::MemoryPause pause;
    return simulators<decltype(KVO_FindIDCard)>("KVO_FindIDCard")(port);
}

int KVO_ReadIDCard(int port, CardInfoStruct *info, unsigned char *photo, unsigned int *photoLen,
                   unsigned char *fp, unsigned int *fpLen, int flag)
{
    const failure_injection::MemoryPause pause;
    return simulators<decltype(KVO_ReadIDCard)>("KVO_ReadIDCard")(port, info, photo, photoLen, fp,
                                                                  fpLen, flag);
}

int KVO_ClosePort(int port)
{
    const failure_injection::MemoryPause pause;
    isOpen = false;
    return simulators<decltype(KVO_ClosePort)>("KVO_ClosePort")(port);
}

int unpack(unsigned char *src, unsigned char *dst, int mode)
{
    const failure_injection::MemoryPause pause;
    return simulators<decltype(unpack)>("unpack")(src, dst, mode);
}
