// A library that another needs, in a folder where no loader looks.

extern "C" [[gnu::visibility("default")]] int neededFunction()
{
    return 0;
}
