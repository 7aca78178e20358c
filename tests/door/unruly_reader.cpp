// Stand-in for the reader maker's shared object that misbehaves, as the variable IDCARD_UNRULY
// says, when it is asked to find the card. Built together with the one that behaves, whose finding
// has the name findCardAsUsual here.

#include "common/closed_functions.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#undef KVO_FindIDCard

namespace
{

constexpr int LAST_DESCRIPTOR = 20;

bool is(const char *behaviour)
{
    const char *const set = std::getenv("IDCARD_UNRULY");
    return set != nullptr && std::strcmp(set, behaviour) == 0;
}

[[noreturn]] void loop()
{
    for (volatile unsigned int turn = 0;;)
        turn = turn + 1;
}

void writeTo(int descriptor, const char *text)
{
    [[maybe_unused]] const ssize_t written = write(descriptor, text, std::strlen(text));
}

void misbehave()
{
    if (is("loop"))
        loop();
    if (is("loop-against-signals")) {
        for (int number = 1; number < NSIG; ++number)
            std::signal(number, SIG_IGN);
        loop();
    }
    if (is("segmentation-fault")) {
        std::signal(SIGSEGV, SIG_DFL); // a sanitizer would end the process in its own way
        std::raise(SIGSEGV);
    }
    if (is("abort"))
        std::abort();
    if (is("exit-0"))
        std::exit(0);
    if (is("_exit-3"))
        _exit(3);
    while (is("print-without-end"))
        std::puts("{\"name\": \"print-without-end\"}");
    if (is("print")) {
        std::puts("{\"printed\": true}");
        std::fputs("printed\n", stderr);
        std::fflush(nullptr);
    }
    for (int i = 0; is("write-everywhere") && i <= LAST_DESCRIPTOR; ++i)
        writeTo(i, "}rubbish{\n");
    for (int i = 0; is("close-everything") && i <= LAST_DESCRIPTOR; ++i)
        close(i);
    if (is("change-locale"))
        std::setlocale(LC_ALL, "tr_TR.UTF-8") == nullptr ? std::setlocale(LC_ALL, "C") : nullptr;
}

} // namespace

extern "C" int findCardAsUsual(int port);
extern "C" IDCARD_READER_EXPORT int KVO_FindIDCard(int port);

int KVO_FindIDCard(int port)
{
    misbehave();
    return findCardAsUsual(port);
}
