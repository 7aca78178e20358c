// In every test program: what it makes can be read by everybody, as with the usual umask, whatever
// that of the user is. Some tests go on as another user.

#include <sys/stat.h>

namespace
{

[[maybe_unused]] const mode_t BEFORE = umask(S_IWGRP | S_IWOTH);

} // namespace
