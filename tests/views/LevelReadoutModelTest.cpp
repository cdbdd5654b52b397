#include <QFontMetricsF>
#include <QSignalSpy>

#include "ViewSources.h"
#include "views/level/LevelReadoutModel.h"

using namespace ostrel;
using Tone = LevelReadoutModel::Tone;

class LevelReadoutModelTest : public testsupport::ViewSourcesFixture {
protected:
    std::unique_ptr<testsupport::ViewSources> model = make(AppModel::Mode::inert);
    LevelReadoutModel readout;

    void SetUp() override { testsupport::show(readout, *model); }
};

TEST_F(LevelReadoutModelTest, BeforeTheFirstIntervalTheNumberIsInItsNoSignalForm)
{
    ASSERT_TRUE(model->meter().hasSignal());
    ASSERT_FALSE(model->meter().level());
    EXPECT_EQ(readout.numberText(), QString::fromUtf16(u"\u2014"));
    EXPECT_EQ(readout.tone(), Tone::noSignal);
    EXPECT_EQ(readout.colorRole(), static_cast<int>(Theme::Role::secondary));
    EXPECT_EQ(readout.numberOpacity(), 0.4);
    EXPECT_EQ(readout.accessibleValue(), "No signal");
}

TEST_F(LevelReadoutModelTest, ALevelWithSignalShowsOneDecimal)
{
    feed(*model, 72.46, 0.1);
    EXPECT_EQ(readout.numberText(), "72.5");
    EXPECT_EQ(readout.tone(), Tone::normal);
    EXPECT_EQ(readout.colorRole(), static_cast<int>(Theme::Role::primary));
    EXPECT_EQ(readout.numberOpacity(), 1.0);
    EXPECT_EQ(readout.accessibleValue(), "72.5 decibels, Normal");
}

TEST_F(LevelReadoutModelTest, TheNumberIsWrittenInTheUsersFormat)
{
    const QLocale german(QLocale::German, QLocale::Germany);
    EXPECT_EQ(LevelReadoutModel::numberText(72.46, true, german), "72,5");
    EXPECT_EQ(LevelReadoutModel::accessibleValue(101.04, true, LevelRange::high, german),
        "101,0 decibels, High");
}

TEST_F(LevelReadoutModelTest, ToneFollowsTheThresholds)
{
    feed(*model, 84.9, 0.1);
    EXPECT_EQ(readout.tone(), Tone::normal);
    feed(*model, 85.0, 0.1);
    EXPECT_EQ(readout.tone(), Tone::elevated);
    EXPECT_EQ(readout.colorRole(), static_cast<int>(Theme::Role::orange));
    feed(*model, 95.0, 0.1);
    EXPECT_EQ(readout.tone(), Tone::high);
    EXPECT_EQ(readout.colorRole(), static_cast<int>(Theme::Role::red));

    model->display().setHighThreshold(100.0);
    EXPECT_EQ(readout.tone(), Tone::elevated);
    EXPECT_EQ(readout.accessibleValue(), "95.0 decibels, Elevated");
}

TEST_F(LevelReadoutModelTest, SilenceTurnsTheNumberBackIntoTheGlyph)
{
    feed(*model, 70.0, 1.0);
    ASSERT_EQ(readout.numberText(), "70.0");
    feed(*model, 30.0, 2.5, -140.0);
    ASSERT_FALSE(model->meter().hasSignal());
    EXPECT_EQ(readout.numberText(), QString::fromUtf16(u"\u2014"));
    EXPECT_EQ(readout.tone(), Tone::noSignal);
    EXPECT_EQ(readout.accessibleValue(), "No signal");
}

TEST_F(LevelReadoutModelTest, PeakIsBlankUntilMeasuredAndSwearsOnlyWhenUnhinged)
{
    EXPECT_EQ(readout.peakText(), QString::fromUtf16(u"\u2014"));
    EXPECT_EQ(readout.peakAccessibleValue(), "None");
    EXPECT_EQ(readout.peakCaption(), "PEAK");

    feed(*model, 80.0, 1.0);
    const auto peak = model->meter().statistics().peak();
    ASSERT_TRUE(peak);
    EXPECT_EQ(readout.peakText(), QString::number(*peak, 'f', 1));
    EXPECT_EQ(readout.peakAccessibleValue(), QString::number(*peak, 'f', 1) + " decibels");

    model->display().setUnhingedMode(true);
    EXPECT_EQ(readout.peakCaption(), "LOUDEST SHIT");
    EXPECT_EQ(readout.peakAccessibleName(), "Peak level");
}

TEST_F(LevelReadoutModelTest, PartsAreSizedFromTheNumber)
{
    readout.setNumberSize(132.0);
    EXPECT_DOUBLE_EQ(readout.unitSize(), 26.4);
    EXPECT_DOUBLE_EQ(readout.peakSize(), 0.14 * 132.0);
    EXPECT_DOUBLE_EQ(readout.peakTracking(), 0.08 * 0.14 * 132.0);
    EXPECT_DOUBLE_EQ(readout.descriptionSize(), 0.17 * 132.0);
    EXPECT_DOUBLE_EQ(readout.padding(), 0.06 * 132.0);

    // Small readouts keep their captions legible.
    readout.setNumberSize(40.0);
    EXPECT_EQ(readout.unitSize(), 13.0);
    EXPECT_EQ(readout.peakSize(), 11.0);
    EXPECT_EQ(readout.descriptionSize(), 12.0);
}

TEST_F(LevelReadoutModelTest, NotifiesOnlyWhenTheTextChanges)
{
    QSignalSpy number(&readout, &LevelReadoutModel::numberTextChanged);
    QSignalSpy tone(&readout, &LevelReadoutModel::toneChanged);
    feed(*model, 70.0, 0.3);
    EXPECT_EQ(number.count(), 1);
    EXPECT_EQ(tone.count(), 1);
    feed(*model, 70.01, 0.1);
    EXPECT_EQ(number.count(), 1);
}

TEST_F(LevelReadoutModelTest, EveryDigitOfTheNumberTakesTheSameWidth)
{
    QFont font;
    font.setPixelSize(132);
    font.setWeight(QFont::Light);
    const QFontMetricsF metrics(font);
    double widest = 0.0;
    for (const char* digit : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"})
        widest = std::max(widest, metrics.horizontalAdvance(QString::fromLatin1(digit)));
    ASSERT_GT(widest, 0.0);
    EXPECT_DOUBLE_EQ(LevelReadoutModel::digitWidth(font), widest);

    readout.setNumberFont(font);
    feed(*model, 71.14, 0.1);
    ASSERT_EQ(readout.numberText(), "71.1");
    const auto& cells = readout.cellList();
    ASSERT_EQ(cells.size(), 4u);
    EXPECT_EQ(cells[0].text + cells[1].text + cells[2].text + cells[3].text, "71.1");
    for (std::size_t digit : {0u, 1u, 3u})
        EXPECT_DOUBLE_EQ(cells[digit].width, widest) << digit;
    // The decimal point keeps its own width, so the number doesn't gape.
    EXPECT_DOUBLE_EQ(cells[2].width, metrics.horizontalAdvance(QStringLiteral(".")));
    EXPECT_EQ(readout.numberCells().size(), 4);

    // Whatever the digits, the number takes the same room.
    const auto widthOf = [](const std::vector<LevelReadoutModel::Cell>& list) {
        double sum = 0.0;
        for (const auto& cell : list)
            sum += cell.width;
        return sum;
    };
    const double before = widthOf(readout.cellList());
    feed(*model, 88.8, 0.1);
    ASSERT_EQ(readout.numberText(), "88.8");
    EXPECT_DOUBLE_EQ(widthOf(readout.cellList()), before);
}

TEST_F(LevelReadoutModelTest, TheNoSignalGlyphIsOneCell)
{
    QFont font;
    font.setPixelSize(40);
    readout.setNumberFont(font);
    ASSERT_EQ(readout.cellList().size(), 1u);
    EXPECT_EQ(readout.cellList()[0].text, QString::fromUtf16(u"\u2014"));
    EXPECT_DOUBLE_EQ(readout.cellList()[0].width,
        QFontMetricsF(font).horizontalAdvance(QString::fromUtf16(u"\u2014")));
}
