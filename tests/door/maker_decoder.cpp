// Stand-in for the photo decoder's shared object.

#include "common/closed_functions.h"

int unpack(unsigned char *src, unsigned char *, int mode)
{
    return src[0] == 'c' && mode == WLT_MODE_BMP_FILE ? WLT_SUCCESS : 0;
}
