// A program of somebody else's that uses nothing but readIDCard, whose name would link whatever the
// program takes a std::string for.

#include "api/idcard_reader_api.h"

#include <cstdio>

int main()
{
    const int result = readIDCard(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    std::printf("called: %d\n", result);
    return result == IDCARD_RESULT_NULL_CARD_KIND ? 0 : 1;
}
