#pragma once

// A library's interface, and what may be changed in it from one version to the next.

#include <string>

enum Kind {
    KIND_RESIDENT,
    KIND_PERMIT,
#ifdef ENUMERATOR_ADDED
    KIND_FOREIGN,
#endif
};

struct Card {
    Kind kind;
#ifdef FIELD_ADDED
    int side;
#endif
#ifdef FIELDS_SWAPPED
    std::string sex;
    std::string name;
#else
    std::string name;
    std::string sex;
#endif
};

class Reader
{
public:
    Reader();
    virtual ~Reader();
#ifdef VIRTUAL_FUNCTION_ADDED
    virtual void cancel();
#endif
    virtual int read(Card *card);

private:
#ifdef PRIVATE_FIELD_ADDED
    void *m_handle = nullptr;
#endif
    int m_state = 0;
};

#ifdef RESULT_TYPE_CHANGED
extern "C" long version();
#else
extern "C" int version();
#endif
#ifndef FUNCTION_REMOVED
extern "C" void reset();
#endif
#ifdef FUNCTION_ADDED
extern "C" void wait();
#endif
