// Runs a fuzz target over the files of the folders that are named: what the fuzzer found once stays
// tested wherever the tests run.

#include "fuzz/fuzz_target.h"

#include <cstdio>
#include <memory>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

namespace
{

/** A copy of exactly this size, so that a read beyond its end is seen. */
void runInput(const QByteArray &input)
{
    const auto size = static_cast<std::size_t>(input.size());
    const std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[size]);
    for (std::size_t i = 0; i < size; ++i)
        copy[i] = static_cast<std::uint8_t>(input.at(static_cast<int>(i)));
    LLVMFuzzerTestOneInput(copy.get(), size);
}

/** How many files were run; 0 also when one could not be read. */
int runFolder(const QString &path)
{
    const QDir folder(path);
    int count = 0;
    for (const QString &name : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s cannot be read\n", qPrintable(file.fileName()));
            return 0;
        }
        runInput(file.readAll());
        ++count;
    }
    return count;
}

} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    runInput({});
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER...\n", argv[0]);
        return EXIT_FAILURE;
    }
    for (int i = 1; i < argc; ++i) {
        const int count = runFolder(QString::fromLocal8Bit(argv[i]));
        if (count == 0) {
            std::fprintf(stderr, "%s holds no input that could be run\n", argv[i]);
            return EXIT_FAILURE;
        }
        std::printf("%d inputs of %s\n", count, argv[i]);
    }
    return EXIT_SUCCESS;
}
