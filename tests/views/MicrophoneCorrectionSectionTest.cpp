// The microphone correction section of the settings: loading a calibration file, what a file that
// fails says, removing the correction, and the response chart's geometry and spoken text.
#include <QFile>
#include <QSGGeometry>
#include <QSignalSpy>
#include <QUrl>

#include "ViewSources.h"
#include "views/main/settings/CalibrationPageModel.h"
#include "views/main/settings/CorrectionFile.h"
#include "views/main/settings/ResponseChart.h"

using namespace ostrel;

namespace {

const QString calibrationFile = QStringLiteral(OSTREL_TEST_DATA_DIR "/measurement-mic-0deg.txt");

MicrophoneCorrection correction(std::vector<MicrophoneCorrection::Point> points)
{
    return MicrophoneCorrection("mic.txt", std::move(points));
}

} // namespace

class MicrophoneCorrectionSectionTest : public testsupport::ViewSourcesFixture {
protected:
    std::unique_ptr<testsupport::ViewSources> sources = make(AppModel::Mode::inert);
    CalibrationPageModel page;

    void SetUp() override { page.setMeasurement(&sources->measurement()); }

    // A file in the scratch folder holding `bytes`, as the dialog hands it over.
    QUrl write(const QString& name, const QByteArray& bytes)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return QUrl::fromLocalFile(file.fileName());
    }
};

TEST_F(MicrophoneCorrectionSectionTest, loadingAFileStoresItsCorrectionUnderTheFileName)
{
    EXPECT_EQ(page.correctionText(), "None");
    EXPECT_EQ(page.coversText(), "");
    EXPECT_TRUE(page.loadCorrectionFile(QUrl::fromLocalFile(calibrationFile)));
    const auto& stored = sources->measurement().microphoneCorrection();
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->name(), "measurement-mic-0deg.txt");
    EXPECT_EQ(stored->sensitivityFactor(), -1.25);
    EXPECT_TRUE(page.hasCorrection());
    EXPECT_EQ(page.correctionText(), "measurement-mic-0deg.txt");
    EXPECT_EQ(page.loadError(), "");
}

TEST_F(MicrophoneCorrectionSectionTest, aFileOfTwoHundredPointsShowsThatCount)
{
    ASSERT_TRUE(page.loadCorrectionFile(QUrl::fromLocalFile(calibrationFile)));
    EXPECT_EQ(page.coversText(), QStringLiteral("20.0 Hz \u2013 20.0 kHz, 200 points"));

    QByteArray small;
    for (int i = 0; i < 200; ++i)
        small += QByteArray::number(100 + 10 * i) + " 0.5\n";
    ASSERT_TRUE(page.loadCorrectionFile(write("small.txt", small)));
    EXPECT_EQ(page.coversText(), QStringLiteral("100 Hz \u2013 2.09 kHz, 200 points"));
}

TEST_F(MicrophoneCorrectionSectionTest, loadingABadFileKeepsThePreviousCorrectionAndShowsTheMessage)
{
    ASSERT_TRUE(page.loadCorrectionFile(QUrl::fromLocalFile(calibrationFile)));
    const auto before = sources->measurement().microphoneCorrection();
    QSignalSpy errors(&page, &CalibrationPageModel::loadErrorChanged);

    EXPECT_FALSE(page.loadCorrectionFile(write("notes.txt", "Just some words\nand more words\n")));
    EXPECT_EQ(page.loadError(), "That file doesn't contain frequency and level columns.");
    EXPECT_EQ(sources->measurement().microphoneCorrection(), before);
    EXPECT_EQ(page.correctionText(), "measurement-mic-0deg.txt");
    EXPECT_EQ(errors.count(), 1);

    EXPECT_FALSE(page.loadCorrectionFile(write("two.txt", "100 1\n200 2\n")));
    EXPECT_EQ(page.loadError(), "That file has too few frequencies to describe a microphone.");
    EXPECT_FALSE(page.loadCorrectionFile(write("loud.txt", "100 1\n200 45\n300 2\n")));
    EXPECT_EQ(
        page.loadError(), "That file's levels are outside the range of a measurement microphone.");
    EXPECT_EQ(sources->measurement().microphoneCorrection(), before);
}

TEST_F(MicrophoneCorrectionSectionTest, aFileThatFailsWithoutACorrectionLeavesNone)
{
    EXPECT_FALSE(page.loadCorrectionFile(write("notes.txt", "nothing here")));
    EXPECT_FALSE(sources->measurement().microphoneCorrection());
    EXPECT_EQ(page.correctionText(), "None");
    EXPECT_FALSE(page.loadError().isEmpty());
}

TEST_F(MicrophoneCorrectionSectionTest, anUnreadableFileSaysItCouldNotBeReadAsText)
{
    const QString message = QStringLiteral("That file couldn't be read as text.");
    EXPECT_FALSE(
        page.loadCorrectionFile(write("image.png", QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11))));
    EXPECT_EQ(page.loadError(), message);
    page.removeCorrection();
    EXPECT_FALSE(page.loadCorrectionFile(QUrl::fromLocalFile(folder.filePath("gone.txt"))));
    EXPECT_EQ(page.loadError(), message);
    page.removeCorrection();
    EXPECT_FALSE(page.loadCorrectionFile(QUrl::fromLocalFile(folder.path())));
    EXPECT_EQ(page.loadError(), message);
    EXPECT_FALSE(sources->measurement().microphoneCorrection());
}

TEST_F(MicrophoneCorrectionSectionTest, removingTheCorrectionClearsTheErrorAsWell)
{
    ASSERT_TRUE(page.loadCorrectionFile(QUrl::fromLocalFile(calibrationFile)));
    EXPECT_FALSE(page.loadCorrectionFile(write("notes.txt", "no numbers")));
    ASSERT_FALSE(page.loadError().isEmpty());
    QSignalSpy errors(&page, &CalibrationPageModel::loadErrorChanged);
    page.removeCorrection();
    EXPECT_EQ(page.loadError(), "");
    EXPECT_EQ(errors.count(), 1);
    EXPECT_FALSE(sources->measurement().microphoneCorrection());
    EXPECT_EQ(page.correctionText(), "None");
}

TEST_F(MicrophoneCorrectionSectionTest, aFileThatLoadsClearsTheMessageOfOneThatFailed)
{
    EXPECT_FALSE(page.loadCorrectionFile(write("notes.txt", "no numbers")));
    ASSERT_FALSE(page.loadError().isEmpty());
    EXPECT_TRUE(page.loadCorrectionFile(QUrl::fromLocalFile(calibrationFile)));
    EXPECT_EQ(page.loadError(), "");
}

TEST(CorrectionFileText, textInUtf16OrLatin1IsReadAsWellAsUtf8)
{
    // A degree sign in Latin-1 is not UTF-8; the numbers still count.
    const auto latin1 = CorrectionFile::decode("* 0\xB0 on axis\n100 1\n");
    ASSERT_TRUE(latin1);
    EXPECT_EQ(*latin1, QStringLiteral("* 0\u00B0 on axis\n100 1\n"));
    // UTF-16 holds zero bytes, but its byte-order mark says what it is.
    const QByteArray utf16("\xFF\xFE"
                           "1\0"
                           "0\0"
                           "0\0"
                           " \0"
                           "1\0",
        12);
    const auto wide = CorrectionFile::decode(utf16);
    ASSERT_TRUE(wide);
    EXPECT_EQ(*wide, QStringLiteral("100 1"));
    EXPECT_FALSE(CorrectionFile::decode(QByteArray("100\0 1", 6)));
}

TEST(ResponseChartGeometry, theAxesSpanTwentyHertzToTwentyKilohertzAndMinusToPlusTwentyDecibels)
{
    EXPECT_DOUBLE_EQ(ResponseChart::xFor(20.0, 300.0), 0.0);
    EXPECT_DOUBLE_EQ(ResponseChart::xFor(20000.0, 300.0), 300.0);
    // A decade is a third of three decades.
    EXPECT_NEAR(ResponseChart::xFor(200.0, 300.0), 100.0, 1e-9);
    EXPECT_DOUBLE_EQ(ResponseChart::xFor(5.0, 300.0), 0.0);
    EXPECT_DOUBLE_EQ(ResponseChart::yFor(20.0, 160.0), 0.0);
    EXPECT_DOUBLE_EQ(ResponseChart::yFor(0.0, 160.0), 80.0);
    EXPECT_DOUBLE_EQ(ResponseChart::yFor(-20.0, 160.0), 160.0);
    EXPECT_DOUBLE_EQ(ResponseChart::yFor(-35.0, 160.0), 160.0);
}

TEST(ResponseChartGeometry, theCurveFollowsTheResponseRelativeToOneKilohertz)
{
    // +6 dB at 1 kHz, so the curve is 6 dB lower everywhere than the file's numbers.
    const auto mic = correction({{20, 4}, {1000, 6}, {20000, 16}});
    const auto points = ResponseChart::curvePoints(mic, QSizeF(300, 160));
    ASSERT_EQ(points.size(), 151u);
    EXPECT_DOUBLE_EQ(points.front().x(), 0.0);
    EXPECT_DOUBLE_EQ(points.back().x(), 300.0);
    EXPECT_NEAR(points.front().y(), ResponseChart::yFor(-2.0, 160.0), 1e-9);
    EXPECT_NEAR(points.back().y(), ResponseChart::yFor(10.0, 160.0), 1e-9);
    // 1 kHz lies at 56.6 % of the axis; there the curve crosses the flat rule.
    const std::size_t kilohertz = 85;
    EXPECT_NEAR(points[kilohertz].y(), 80.0, 1.0);
    EXPECT_TRUE(ResponseChart::curvePoints(mic, QSizeF(0, 160)).empty());
}

TEST(ResponseChartGeometry, theCurveIsAStripOfTwoVerticesPerPointAsWideAsTheLine)
{
    const std::vector<QPointF> points {{0, 50}, {10, 50}, {20, 50}};
    QSGGeometry geometry(QSGGeometry::defaultAttributes_Point2D(), 0);
    ResponseChart::fillStrip(geometry, points, 2.0f);
    ASSERT_EQ(geometry.vertexCount(), 6);
    const QSGGeometry::Point2D* vertices = geometry.vertexDataAsPoint2D();
    for (int i = 0; i < 3; ++i) {
        EXPECT_FLOAT_EQ(vertices[2 * i].x, vertices[2 * i + 1].x);
        EXPECT_FLOAT_EQ(std::abs(vertices[2 * i].y - vertices[2 * i + 1].y), 2.0f);
    }
    // On a slope the strip keeps its width across the line, not along the axis.
    ResponseChart::fillStrip(geometry, {{0, 0}, {10, 10}}, 2.0f);
    const QSGGeometry::Point2D* sloped = geometry.vertexDataAsPoint2D();
    EXPECT_NEAR(std::hypot(sloped[0].x - sloped[1].x, sloped[0].y - sloped[1].y), 2.0, 1e-5);
    ResponseChart::fillStrip(geometry, {{0, 0}}, 2.0f);
    EXPECT_EQ(geometry.vertexCount(), 0);
}

TEST(ResponseChartGeometry, theChartSpeaksTheResponseAtFiftyHertzAndTenKilohertz)
{
    EXPECT_EQ(ResponseChart::accessibleName(), "Microphone response relative to 1 kilohertz");
    const auto mic = correction({{50, -1.54}, {1000, 0.5}, {10000, 3.5}});
    EXPECT_EQ(ResponseChart::accessibleValue(mic), "-2.0 dB at 50 hertz, 3.0 dB at 10 kilohertz");
    const auto flat = correction({{50, 0.02}, {1000, 0.05}, {10000, 0.04}});
    EXPECT_EQ(ResponseChart::accessibleValue(flat), "0.0 dB at 50 hertz, 0.0 dB at 10 kilohertz");
}

TEST_F(MicrophoneCorrectionSectionTest, theChartFollowsTheCorrectionInForce)
{
    ResponseChart chart;
    chart.setMeasurement(&sources->measurement());
    EXPECT_FALSE(chart.hasCurve());
    EXPECT_EQ(chart.accessibleValue(), "");
    QSignalSpy curve(&chart, &ResponseChart::curveChanged);
    ASSERT_TRUE(page.loadCorrectionFile(QUrl::fromLocalFile(calibrationFile)));
    EXPECT_EQ(curve.count(), 1);
    EXPECT_TRUE(chart.hasCurve());
    EXPECT_EQ(chart.accessibleValue(),
        ResponseChart::accessibleValue(*sources->measurement().microphoneCorrection()));
    chart.setSize(QSizeF(300, 160));
    EXPECT_DOUBLE_EQ(chart.flatY(), 80.0);
    const QVariantList ticks = chart.frequencyTicks();
    ASSERT_EQ(ticks.size(), 10);
    EXPECT_EQ(ticks.front().toMap().value("text").toString(), "20");
    EXPECT_EQ(ticks[5].toMap().value("text").toString(), "1k");
    EXPECT_EQ(ticks.back().toMap().value("text").toString(), "20k");
    EXPECT_DOUBLE_EQ(ticks.back().toMap().value("x").toDouble(), 300.0);
    const QVariantList levels = chart.levelTicks();
    ASSERT_EQ(levels.size(), 5);
    EXPECT_EQ(levels.front().toMap().value("text").toString(), "-20");
    EXPECT_DOUBLE_EQ(levels.front().toMap().value("y").toDouble(), 160.0);
    page.removeCorrection();
    EXPECT_FALSE(chart.hasCurve());
}
