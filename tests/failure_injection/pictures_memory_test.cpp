// The parts of a picture that Qt makes of given bytes, with every allocation failing in turn: the
// caller gets the whole part or std::bad_alloc. A part that is only missing would be left out, and
// the card without it taken for whole. A screen of 16 bits makes Qt convert what it is given.

#include <functional>
#include <new>
#include <optional>

#include <gmock/gmock.h>

#include <QImage>

#include "render/card_photo.h"
#include "render/card_template.h"
#include "tests/failure_injection/failing_memory.h"
#include "tests/render/sample_photo.h"

namespace
{

using namespace failure_injection;

using MakePart = std::function<QPixmap()>;

/** The part, made with an allocation failing; nothing: std::bad_alloc came. */
std::optional<QPixmap> partWithFailure(const MakePart &make, long position, Extent extent)
{
    startMemory(position, extent);
    std::optional<QPixmap> part;
    try {
        part = make();
    } catch (const std::bad_alloc &) {
    }
    stopMemory();
    return part;
}

/** Makes the part until no allocation is left that could fail. How often it threw. */
int sweep(const MakePart &make, Extent extent)
{
    const QImage whole = make().toImage();
    EXPECT_FALSE(whole.isNull());
    int thrown = 0;
    for (long position = 1;; ++position) {
        const auto part = partWithFailure(make, position, extent);
        if (failedAllocations() == 0)
            return thrown;
        thrown += part ? 0 : 1;
        EXPECT_TRUE(!part || part->toImage() == whole)
            << "allocation " << position << ": " << placeOfFailure();
    }
}

void ignore(QtMsgType, const QMessageLogContext &, const QString &) {}

/** Qt says that it lacks memory, which is no news. */
class PictureMemory : public testing::TestWithParam<Extent>
{
protected:
    void SetUp() override { m_handler = qInstallMessageHandler(ignore); }
    void TearDown() override { qInstallMessageHandler(m_handler); }

private:
    QtMessageHandler m_handler = nullptr;
};

INSTANTIATE_TEST_SUITE_P(EachExtent, PictureMemory,
                         testing::Values(Extent::ONE, Extent::AND_ALL_AFTER),
                         [](const auto &instance) {
                             return instance.param == Extent::ONE ? "one" : "all_after";
                         });

} // namespace

TEST_P(PictureMemory, RunsOutForATemplate_GivesItWholeOrThrows)
{
    const auto load = [] { return loadTemplate(QStringLiteral(":/Pics/IDCardFront.bmp")); };
    EXPECT_GT(sweep(load, GetParam()), 0);
}

TEST_P(PictureMemory, RunsOutForAPhoto_GivesItWholeOrThrows)
{
    unsigned char photo[IDCARD_PHOTO_SIZE] = {};
    putSamplePhoto(photo);
    for (const auto background : {PhotoBackground::AS_IT_IS, PhotoBackground::TRANSPARENT}) {
        const auto fit = [&] { return fittedPhoto(photo, background, QSize(100, 130)); };
        EXPECT_GT(sweep(fit, GetParam()), 0);
    }
}
