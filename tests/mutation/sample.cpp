// A library of a few lines: every operator finds a place in it that its test notices.

struct Row {
    int code; // a comment that says 7 < 8
    const char *name;
};

static const Row ROWS[] = {
    {1, "one"},
    {2, "two"},
};

static int calls;

static int count()
{
    return ++calls;
}

/** The name of `code`, the last row's for 0; null when it has none. */
const char *name(int code)
{
    if (code < 0)
        return nullptr;
    for (int i = 0; i != 2; ++i)
        if (ROWS[i].code == code || (code == 0 && i + 1 == 2))
            return ROWS[i].name;
    return nullptr;
}

/** Counts calls in steps of 3. */
int step()
{
    static int total = 1;
    int before = 0;
    before = calls;
    count();
    total = total + 3 * (calls - before);
    return total;
}
