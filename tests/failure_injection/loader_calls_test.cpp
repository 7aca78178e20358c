// A read through the makers' shared objects, which the library has loaded, with every call of the
// loader failing in turn, and every allocation up to the pictures: a documented code, nothing half
// written, the port closed.

#include <dlfcn.h>

#include <gmock/gmock.h>

#include "tests/failure_injection/failing_calls.h"
#include "tests/failure_injection/failing_memory.h"
#include "tests/failure_injection/quiet_log.h"
#include "tests/library/reading.h"
#include "tests/support/message_log.h"

namespace
{

using namespace failure_injection;
using testing::HasSubstr;

/** Whether the port of the maker's reader is open; the library must have loaded it. */
bool portIsOpen()
{
    void *const library = dlopen(IDCARD_READER_FILE, RTLD_NOW | RTLD_NOLOAD);
    EXPECT_NE(library, nullptr) << dlerror();
    const auto *const isOpen = static_cast<const bool *>(dlsym(library, "makersPortIsOpen"));
    const bool answer = isOpen != nullptr && *isOpen;
    dlclose(library);
    return answer;
}

class LoaderCall : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(reading().result, 0) << "the makers' shared objects are not found";
    }
    void TearDown() override { setFailingCall({nullptr, 0, 0}); }

    struct Outcome {
        int result;
        std::unique_ptr<Reading> reading;
    };

    static Outcome reading()
    {
        auto outputs = std::make_unique<Reading>();
        mark(*outputs);
        const int result = outputs->read();
        return {result, std::move(outputs)};
    }

    /** The results of a read with `function` failing at each of its calls in turn. */
    static std::vector<int> resultsOf(const char *function)
    {
        std::vector<int> results;
        setFailingCall({function, 0, 0});
        reading();
        const int count = callsMade();
        for (int position = 1; position <= count; ++position) {
            SCOPED_TRACE(std::string(function) + " " + std::to_string(position));
            setFailingCall({function, position, 0});
            const Outcome outcome = reading();
            EXPECT_FALSE(portIsOpen());
            if (outcome.result != 0)
                expectUntouched(*outcome.reading);
            else
                EXPECT_EQ(outcome.reading->cn.szName, "first");
            results.push_back(outcome.result);
        }
        setFailingCall({nullptr, 0, 0});
        EXPECT_EQ(reading().result, 0);
        return results;
    }
};

} // namespace

// Each of the four functions is looked for beside the library, where it is not, and then by name.
TEST_F(LoaderCall, Dlopen_FailsTheStepThatNeedsIt)
{
    EXPECT_THAT(resultsOf("dlopen"),
                testing::ElementsAre(0, IDCARD_RESULT_PORT_NOT_OPEN, // open, and what closes
                                     0, IDCARD_RESULT_NO_CARD,       //
                                     0, IDCARD_RESULT_READ_FAILED,   //
                                     0, IDCARD_RESULT_PHOTO_NOT_DECODED));
}

TEST_F(LoaderCall, Dlopen_IsReportedWithTheLoadersReason)
{
    setFailingCall({"dlopen", 2, 0});
    const MessageLog log;
    reading();
    EXPECT_THAT(log.texts(), testing::Contains(testing::AllOf(HasSubstr(IDCARD_READER_FILE),
                                                              HasSubstr("/nowhere/library.so"),
                                                              HasSubstr("No such file"))));
}

// First in the process, for everybody and for the library alone, where it is not, then in the
// shared object.
TEST_F(LoaderCall, Dlsym_FailsTheStepThatNeedsIt)
{
    constexpr int NO_OPEN = IDCARD_RESULT_PORT_NOT_OPEN;
    EXPECT_THAT(resultsOf("dlsym"), testing::ElementsAre(0, 0, NO_OPEN, 0, 0, NO_OPEN, //
                                                         0, 0, NO_OPEN, 0, 0, NO_OPEN, //
                                                         0, 0, IDCARD_RESULT_NO_CARD,  //
                                                         0, 0, IDCARD_RESULT_READ_FAILED, 0, 0,
                                                         IDCARD_RESULT_PHOTO_NOT_DECODED));
}

TEST_F(LoaderCall, MemoryRunsOutUpToThePictures_ACodeIsGivenAndThePortClosed)
{
    const QuietLog quiet;
    const auto whole = reading().reading;
    const auto readWithFailure = [&](long position, Extent extent) {
        SCOPED_TRACE(std::to_string(position));
        auto outputs = std::make_unique<Reading>();
        mark(*outputs);
        startMemory(position, extent);
        const int result = outputs->read();
        stopMemory();
        EXPECT_FALSE(portIsOpen());
        EXPECT_THAT(result, testing::AnyOf(IDCARD_RESULT_OK, IDCARD_RESULT_READ_FAILED,
                                           IDCARD_RESULT_PORT_NOT_OPEN, IDCARD_RESULT_NO_CARD,
                                           IDCARD_RESULT_PHOTO_NOT_DECODED));
        EXPECT_EQ(outputs->front,
                  result == IDCARD_RESULT_OK ? whole->front : std::string("front before"));
        return outputs->cn.szBirthDay == whole->cn.szBirthDay;
    };
    long beforePictures = 0;
    while (beforePictures < 1000 && !readWithFailure(beforePictures + 1, Extent::AND_ALL_AFTER))
        ++beforePictures;
    EXPECT_GT(beforePictures, 100);
    for (long position = 1; position <= beforePictures; ++position)
        readWithFailure(position, Extent::ONE);
    EXPECT_EQ(reading().result, 0);
    std::printf("%ld allocations up to the pictures\n", beforePictures);
}
