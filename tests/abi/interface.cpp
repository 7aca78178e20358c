#include "tests/abi/interface.h"

Reader::Reader() = default;
Reader::~Reader() = default;

int Reader::read(Card *card)
{
    card->kind = KIND_PERMIT;
    return m_state;
}

#ifdef VIRTUAL_FUNCTION_ADDED
void Reader::cancel() {}
#endif

decltype(version()) version()
{
    return 1;
}

#ifndef FUNCTION_REMOVED
void reset() {}
#endif

#ifdef FUNCTION_ADDED
void wait() {}
#endif
