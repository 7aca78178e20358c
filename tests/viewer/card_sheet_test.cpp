// The sheet of a card is measured on the page that comes out, with the programs of poppler.

#include "apps/card_view/card_sheet.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QPrinter>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

#include "tests/support/build_programs.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"
#include "tests/support/message_log.h"

namespace
{

using app::CardSheet;
using app::paintSheet;
using app::writeSheetPdf;
using build_programs::outputOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double TOLERANCE_MM = 0.1;
constexpr double CARD_WIDTH_MM = 85.6;
constexpr double CARD_HEIGHT_MM = 54.0;

/** A picture of one colour with a darker left half, as JPEG. */
QByteArray jpeg(const QColor &colour, const QSize &size = {494, 312})
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.setPixelColor(x, y, x < size.width() / 2 ? colour.darker() : colour);
    }
    QBuffer bytes;
    picture.save(&bytes, "JPG", 100);
    return bytes.data();
}

/** What `pdfinfo` says behind a name. */
std::string pdfFact(const QString &pdf, const QString &name)
{
    const QString facts = QString::fromUtf8(outputOf(IDCARD_PDFINFO, {pdf}));
    const QRegularExpression line(QStringLiteral("^%1: +(.*)$").arg(name),
                                  QRegularExpression::MultilineOption);
    return line.match(facts).captured(1).toStdString();
}

/** Width and height in pixels of every picture in the file, in their order, "494x312" for instance.
 */
std::vector<std::string> pictureSizes(const QString &pdf)
{
    const QString list = QString::fromUtf8(outputOf(IDCARD_PDFIMAGES, {"-list", pdf}));
    const QRegularExpression row(QStringLiteral("^ +1 +\\d+ image +(\\d+) +(\\d+) "),
                                 QRegularExpression::MultilineOption);
    std::vector<std::string> sizes;
    auto match = row.globalMatch(list);
    while (match.hasNext()) {
        const auto found = match.next();
        sizes.push_back((found.captured(1) + "x" + found.captured(2)).toStdString());
    }
    return sizes;
}

/** A part of the page, all lengths in pixels at that many pixels a millimetre. */
QImage rendered(const QString &pdf, int pixelsPerMm, const QRect &part)
{
    return QImage::fromData(
        outputOf(IDCARD_PDFTOPPM,
                 {"-r", QString::number(25.4 * pixelsPerMm), "-x", QString::number(part.x()), "-y",
                  QString::number(part.y()), "-W", QString::number(part.width()), "-H",
                  QString::number(part.height()), pdf}));
}

/** Where something else than white paper begins and ends. */
struct Extent {
    double begin = NAN;
    double end = NAN;
    double length() const { return end - begin; }
    double middle() const { return (begin + end) / 2; }
};

/** The marks in one row of pixels or one column of them, in mm from where it begins. */
std::vector<Extent> marksIn(const QImage &line, int pixelsPerMm)
{
    std::vector<Extent> marks;
    bool isInside = false;
    for (int i = 0; i < std::max(line.width(), line.height()); ++i) {
        const QRgb pixel = line.height() == 1 ? line.pixel(i, 0) : line.pixel(0, i);
        const bool isMark = pixel != qRgb(255, 255, 255);
        const double place = double(i) / pixelsPerMm;
        if (isMark && !isInside)
            marks.push_back({place, place});
        if (isMark)
            marks.back().end = double(i + 1) / pixelsPerMm;
        isInside = isMark;
    }
    return marks;
}

/** The marks down the middle of the page; across it at a height in mm. */
std::vector<Extent> marksDown(const QString &pdf)
{
    constexpr int FINE = 50; // pixels a millimetre
    return marksIn(rendered(pdf, FINE, {105 * FINE, 0, 1, 297 * FINE}), FINE);
}

std::vector<Extent> marksAcross(const QString &pdf, double height)
{
    constexpr int FINE = 50;
    return marksIn(rendered(pdf, FINE, {0, int(height * FINE), 210 * FINE, 1}), FINE);
}

/** Both sides in their true size, one above the other, in the middle of an A4 page. */
void expectTrueSize(const QString &pdf)
{
    EXPECT_EQ(pdfFact(pdf, "Pages"), "1");
    EXPECT_THAT(pdfFact(pdf, "Page size"), HasSubstr("(A4)"));
    const std::vector<Extent> down = marksDown(pdf);
    ASSERT_EQ(down.size(), 2U);
    for (const Extent &side : down) {
        EXPECT_NEAR(side.length(), CARD_HEIGHT_MM, TOLERANCE_MM);
        const std::vector<Extent> across = marksAcross(pdf, side.middle());
        ASSERT_EQ(across.size(), 1U);
        EXPECT_NEAR(across[0].length(), CARD_WIDTH_MM, TOLERANCE_MM);
        EXPECT_NEAR(across[0].middle(), 105.0, TOLERANCE_MM);
    }
    EXPECT_NEAR((down[0].begin + down[1].end) / 2, 148.5, TOLERANCE_MM);
    EXPECT_GT(down[1].begin - down[0].end, 5.0) << "no room for scissors";
}

class Sheet : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /** Writes the sheet and returns the problem. */
    std::string write(const CardSheet &sheet, const QString &file) const
    {
        QString problem;
        const bool isWritten = writeSheetPdf(sheet, file, &problem);
        EXPECT_EQ(isWritten, problem.isEmpty());
        return problem.toStdString();
    }

    const CardSheet m_sheet{jpeg(Qt::red), jpeg(Qt::blue), QStringLiteral("林晓雨")};
    QTemporaryDir m_folder;
    const QString m_pdf = path("card.pdf");
};

class PrintedSheet : public Sheet, public testing::WithParamInterface<int>
{
};

TEST_F(Sheet, PdfHasBothSidesInTheirTrueSizeOnOneA4Page)
{
    ASSERT_THAT(write(m_sheet, m_pdf), IsEmpty());
    expectTrueSize(m_pdf);
}

TEST_F(Sheet, PicturesOfAnyShapeAreAsLargeAsACard)
{
    const CardSheet sheet{jpeg(Qt::red, {339, 213}), jpeg(Qt::blue, {100, 100}), {}};
    ASSERT_THAT(write(sheet, m_pdf), IsEmpty());
    expectTrueSize(m_pdf);
}

TEST_F(Sheet, FrontIsAboveTheBackAndNeitherIsMirrored)
{
    ASSERT_THAT(write(m_sheet, m_pdf), IsEmpty());
    const QImage page = rendered(m_pdf, 1, {0, 0, 210, 297});
    const auto isAbout = [&](QPoint place, const QColor &colour) {
        const QColor seen = page.pixelColor(place);
        return std::abs(seen.red() - colour.red()) + std::abs(seen.green() - colour.green()) +
                   std::abs(seen.blue() - colour.blue()) <
               30;
    };
    EXPECT_TRUE(isAbout({85, 110}, QColor(Qt::red).darker()));
    EXPECT_TRUE(isAbout({125, 110}, Qt::red));
    EXPECT_TRUE(isAbout({85, 185}, QColor(Qt::blue).darker()));
    EXPECT_TRUE(isAbout({125, 185}, Qt::blue));
}

TEST_F(Sheet, PicturesKeepEveryPixel)
{
    const CardSheet sheet{jpeg(Qt::red, {1011, 638}), jpeg(Qt::blue, {339, 213}), {}};
    ASSERT_THAT(write(sheet, m_pdf), IsEmpty());
    EXPECT_THAT(pictureSizes(m_pdf), ElementsAre("1011x638", "339x213"));
}

TEST_F(Sheet, TitleIsThatOfTheDocument)
{
    ASSERT_THAT(write(m_sheet, m_pdf), IsEmpty());
    EXPECT_EQ(pdfFact(m_pdf, "Title"), "林晓雨");
}

TEST_F(Sheet, MissingBackLeavesItsPlaceEmptyAndTheFrontInItsOwn)
{
    ASSERT_THAT(write(m_sheet, m_pdf), IsEmpty());
    ASSERT_THAT(write({m_sheet.front, {}, {}}, path("front.pdf")), IsEmpty());
    const std::vector<Extent> both = marksDown(m_pdf);
    const std::vector<Extent> one = marksDown(path("front.pdf"));
    ASSERT_EQ(both.size(), 2U);
    ASSERT_EQ(one.size(), 1U);
    EXPECT_DOUBLE_EQ(one[0].begin, both[0].begin);
    EXPECT_DOUBLE_EQ(one[0].end, both[0].end);
    EXPECT_THAT(pictureSizes(path("front.pdf")), ElementsAre("494x312"));
}

TEST_F(Sheet, MissingFrontLeavesItsPlaceEmptyAndTheBackInItsOwn)
{
    ASSERT_THAT(write({{}, m_sheet.back, {}}, m_pdf), IsEmpty());
    const std::vector<Extent> one = marksDown(m_pdf);
    ASSERT_EQ(one.size(), 1U);
    EXPECT_GT(one[0].begin, 148.5) << "in the lower half";
}

TEST_F(Sheet, WithoutAnyPictureIsRefused)
{
    EXPECT_THAT(write({{}, {}, "empty"}, m_pdf), HasSubstr("no picture of either side"));
    EXPECT_FALSE(QFile::exists(m_pdf));
}

TEST_F(Sheet, DamagedPictureIsRefusedAndNamed)
{
    EXPECT_THAT(write({"no JPEG", m_sheet.back, {}}, m_pdf), HasSubstr("front is damaged"));
    EXPECT_THAT(write({m_sheet.front, "", {}}, m_pdf), HasSubstr("back is damaged"));
    EXPECT_FALSE(QFile::exists(m_pdf));
}

TEST_F(Sheet, ReplacedPdfIsItsOwnersAlone)
{
    writeFile(m_pdf, "old");
    QFile::setPermissions(m_pdf, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                     QFileDevice::ReadOther);
    ASSERT_THAT(write(m_sheet, m_pdf), IsEmpty());
    EXPECT_EQ(modeOf(m_pdf), 0600);
    expectTrueSize(m_pdf);
}

TEST_F(Sheet, WriteProtectedPdfIsKeptAndReported)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may write every file";
    writeFile(m_pdf, "old");
    QFile::setPermissions(m_pdf, QFileDevice::ReadOwner);
    EXPECT_THAT(write(m_sheet, m_pdf), HasSubstr("card.pdf could not be written: "));
    EXPECT_EQ(readFile(m_pdf), "old");
}

TEST_F(Sheet, NothingElseIsLeftInTheFolder)
{
    ASSERT_THAT(write(m_sheet, m_pdf), IsEmpty());
    EXPECT_THAT(namesIn(m_folder.path()), ElementsAre("card.pdf"));
}

TEST_F(Sheet, FolderThatIsNotThereIsReported)
{
    EXPECT_THAT(write(m_sheet, path("nowhere/card.pdf")),
                testing::AllOf(HasSubstr("nowhere/card.pdf could not be written: "),
                               HasSubstr("choose another folder")));
    EXPECT_THAT(namesIn(m_folder.path()), IsEmpty());
}

TEST_F(Sheet, FolderInPlaceOfTheFileIsReported)
{
    EXPECT_THAT(write(m_sheet, m_folder.path()), HasSubstr("could not be written: "));
    EXPECT_THAT(namesIn(m_folder.path()), IsEmpty());
}

TEST_F(Sheet, FullDiskLeavesNoFile)
{
    const FileSizeLimit limit(1000);
    EXPECT_THAT(write(m_sheet, m_pdf), HasSubstr("card.pdf could not be written: "));
    EXPECT_THAT(namesIn(m_folder.path()), IsEmpty());
}

TEST_F(Sheet, FullDiskLeavesTheOldFile)
{
    writeFile(m_pdf, "old");
    const FileSizeLimit limit(1000);
    EXPECT_THAT(write(m_sheet, m_pdf), HasSubstr("card.pdf could not be written: "));
    EXPECT_EQ(readFile(m_pdf), "old");
    EXPECT_THAT(namesIn(m_folder.path()), ElementsAre("card.pdf"));
}

TEST_P(PrintedSheet, IsInTrueSizeWhateverThePrinterWasSetTo)
{
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_pdf);
    printer.setResolution(GetParam());
    printer.setPageSize(QPageSize(QPageSize::Letter));
    printer.setPageOrientation(QPageLayout::Landscape);
    printer.setPageMargins(QMarginsF(30, 20, 10, 5));
    ASSERT_TRUE(paintSheet(m_sheet, &printer));
    expectTrueSize(m_pdf);
    EXPECT_THAT(pictureSizes(m_pdf), ElementsAre("494x312", "494x312"));
    EXPECT_EQ(printer.docName(), m_sheet.title);
}

INSTANTIATE_TEST_SUITE_P(Resolutions, PrintedSheet, testing::Values(72, 300, 1200));

TEST_F(Sheet, PrinterThatCannotStartIsReported)
{
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path("nowhere/card.pdf"));
    const MessageLog log;
    EXPECT_FALSE(paintSheet(m_sheet, &printer));
    EXPECT_EQ(log.texts(), std::vector<std::string>{"QPainter::begin(): Returned false"});
}

TEST_F(Sheet, PrinterIsNotStartedForADamagedPicture)
{
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(m_pdf);
    EXPECT_FALSE(paintSheet({m_sheet.front, "no JPEG", {}}, &printer));
    EXPECT_FALSE(paintSheet({{}, {}, {}}, &printer));
    EXPECT_FALSE(QFile::exists(m_pdf));
}

} // namespace
