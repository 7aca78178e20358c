// readIDCard when memory runs out: at every allocation up to the pictures in turn, nothing is
// thrown, the port is closed, and the fields written so far are a beginning of the kind's order.

#include "tests/library/reading.h"

#include <cstdlib>
#include <new>

#include <dlfcn.h>

#include <QPixmap>

#include "common/closed_functions.h"
#include "reader/tav_reader.h"

namespace
{

int allocationsLeft = -1; // negative: memory does not run out
int refusedAllocations = 0;
int openResult = KVO_SUCCESS;
bool portOpen = false;
int makersKind = 0;

} // namespace

// Where a template becomes a picture: the record is filled then, and memory suffices from here on.
QPixmap QPixmap::fromImageInPlace(QImage &image, Qt::ImageConversionFlags flags)
{
    allocationsLeft = -1;
    using Function = QPixmap (*)(QImage &, Qt::ImageConversionFlags);
    static const auto original = reinterpret_cast<Function>(dlsym(
        RTLD_NEXT, "_ZN7QPixmap16fromImageInPlaceER6QImage6QFlagsIN2Qt19ImageConversionFlagEE"));
    return original(image, flags);
}

void *operator new(std::size_t size)
{
    if (allocationsLeft == 0) {
        ++refusedAllocations;
        throw std::bad_alloc();
    }
    if (allocationsLeft > 0)
        --allocationsLeft;
    if (void *memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

int KVO_OpenPort(int)
{
    portOpen = openResult == KVO_SUCCESS;
    return openResult;
}

int KVO_FindIDCard(int)
{
    return KVO_SUCCESS;
}

int KVO_ReadIDCard(int, CardInfoStruct *info, unsigned char *, unsigned int *photoLen,
                   unsigned char *, unsigned int *fpLen, int)
{
    auto *const bytes = reinterpret_cast<unsigned char *>(info);
    for (std::size_t i = 4; i < sizeof(CardInfoStruct); i += 2) { // every character is 啊
        bytes[i] = 0x4a;
        bytes[i + 1] = 0x55;
    }
    std::memcpy(info->nationality, "A\0T\0F\0", 6); // a country with a long name
    info->kind = makersKind;
    *photoLen = IDCARD_PHOTO_SIZE;
    *fpLen = 0;
    return KVO_SUCCESS;
}

int KVO_ClosePort(int)
{
    portOpen = false;
    return KVO_SUCCESS;
}

int unpack(unsigned char *, unsigned char *, int)
{
    return 0;
}

namespace
{

/** Which of the record's fields were written, in the order in which a read writes them. */
template <typename Record>
void expectBeginning(const Record &record)
{
    bool ended = false;
    for (const auto &field : fieldsOf(record)) {
        const bool written = (record.*field.member).rfind("before ", 0) != 0;
        EXPECT_FALSE(written && ended) << "a field was written after one that was not";
        ended = ended || !written;
    }
}

template <typename Record>
void readUntilMemorySuffices(int kind, Record Reading::*record)
{
    makersKind = kind;
    int failures = 0;
    for (int n = 0; n < 1000; ++n) {
        Reading reading;
        mark(reading);
        allocationsLeft = n;
        const int result = reading.read();
        const bool exhausted = allocationsLeft == 0;
        allocationsLeft = -1;

        EXPECT_FALSE(portOpen) << "the port stayed open at allocation " << n;
        expectBeginning(reading.*record);
        if (result == 0) {
            EXPECT_NE(reading.front, "front before");
            EXPECT_GT(failures, 3) << "memory never ran out";
            return;
        }
        EXPECT_TRUE(exhausted);
        EXPECT_TRUE(result == IDCARD_RESULT_READ_FAILED || result == IDCARD_RESULT_PORT_NOT_OPEN)
            << result;
        EXPECT_EQ(reading.front, "front before");
        ++failures;
    }
    FAIL() << "the read never came through";
}

} // namespace

TEST(MemoryExhaustion, PortThatDoesNotOpen_LosesTheMessageAndNothingElse)
{
    openResult = 5;
    refusedAllocations = 0;
    allocationsLeft = 0;
    CTavReader reader;
    allocationsLeft = -1;
    openResult = KVO_SUCCESS;

    EXPECT_EQ(refusedAllocations, 1);
    EXPECT_EQ(reader.FetchCardData(nullptr, nullptr, nullptr, nullptr, nullptr),
              CTavReader::PORT_NOT_OPEN);
}

TEST(MemoryExhaustion, EveryKind_LeavesABeginningOfTheRecordAndAClosedPort)
{
    readUntilMemorySuffices(1, &Reading::cn);
    readUntilMemorySuffices(2, &Reading::hmt);
    readUntilMemorySuffices(3, &Reading::f2017);
    readUntilMemorySuffices(4, &Reading::fNew);
}
