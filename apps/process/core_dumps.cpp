#include "apps/process/core_dumps.h"

#include <sys/resource.h>

void app::forbidCoreDumps()
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none); // making a limit smaller is always allowed
}
