// Fails when one of the functions of the sample does something else.

const char *name(int code);
int step();

static bool same(const char *one, const char *other)
{
    if (one == nullptr || other == nullptr)
        return one == other;
    while (*one != '\0' && *one == *other)
        ++one, ++other;
    return *one == *other;
}

int main()
{
    const bool names =
        same(name(1), "one") && same(name(2), "two") && same(name(0), "two") && name(3) == nullptr;
    return names && step() == 4 && step() == 7 ? 0 : 1;
}
