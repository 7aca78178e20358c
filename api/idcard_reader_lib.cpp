#include "api/idcard_reader_lib.h"

Idcard_reader_lib::Idcard_reader_lib() = default;
