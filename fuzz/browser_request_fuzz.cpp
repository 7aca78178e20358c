// What a browser sends the host of its extension: frames, and the requests in them.

#include "fuzz/fuzz_target.h"

#include "apps/browser_host/frames.h"
#include "apps/browser_host/request.h"

namespace
{

using namespace app;

void judge(Request request)
{
    if (!request.problem.isEmpty())
        return;
    demand(!request.origin.isEmpty());
    demand(request.timeoutSeconds >= 1 && request.timeoutSeconds <= 120);
    demand(request.include.size() <= 2 && request.include.removeDuplicates() == 0);
    for (const QString &part : request.include)
        demand(part == "photo" || part == "pictures");
    demand(!request.language.isEmpty());
    for (const QChar character : request.language)
        demand(character == '-' || (character.unicode() < 128 && character.isLetterOrNumber()));
}

/** The first byte of an input says in which parts the rest comes. */
int partSize(std::uint8_t first)
{
    return first == 0 ? 65536 : first;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    FrameReader reader;
    int taken = 0;
    for (int at = 0; at < bytes.size() && !reader.isTooLong(); at += partSize(data[0])) {
        reader.take(bytes.mid(at, partSize(data[0])));
        while (const auto body = reader.next()) {
            demand(body->size() <= 8192);
            demand(bytes.mid(taken + 4, body->size()) == *body);
            taken += 4 + body->size();
            judge(parseRequest(*body));
        }
    }
    demand(taken <= bytes.size());
    return 0;
}
