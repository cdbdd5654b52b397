#include <QFontMetricsF>
#include <QSignalSpy>

#include "ViewSources.h"
#include "views/level/LevelGraphModel.h"

using namespace ostrel;
using Domain = LevelGraphModel::Domain;

namespace {

std::vector<GraphPoint> pointsAt(std::initializer_list<double> levels)
{
    std::vector<GraphPoint> points;
    Date date = Date {} + std::chrono::hours(24 * 365 * 56);
    std::int64_t id = 0;
    for (double level : levels) {
        points.push_back({id++, date, level});
        date = addingSeconds(date, 0.25);
    }
    return points;
}

} // namespace

class LevelGraphModelTest : public testsupport::ViewSourcesFixture { };

TEST_F(LevelGraphModelTest, WithoutPointsTheScaleRunsFromFortyToAHundred)
{
    EXPECT_EQ(LevelGraphModel::levelDomain({}), (Domain {40.0, 100.0}));
}

TEST_F(LevelGraphModelTest, ASteadyQuietRoomNeverSpansUnderThirtyDecibels)
{
    const auto domain = LevelGraphModel::levelDomain(pointsAt({40.2, 40.9, 41.0, 40.5}));
    EXPECT_EQ(domain, (Domain {25.0, 55.0}));
    for (double level = 20.0; level < 140.0; level += 7.3) {
        const auto steady = LevelGraphModel::levelDomain(pointsAt({level, level + 0.5}));
        EXPECT_EQ(steady.high - steady.low, 30.0) << level;
        EXPECT_LE(steady.low, level);
        EXPECT_GE(steady.high, level + 0.5);
    }
}

TEST_F(LevelGraphModelTest, TheLowEndIsClampedAtZero)
{
    EXPECT_EQ(LevelGraphModel::levelDomain(pointsAt({2.0, 5.0})), (Domain {0.0, 15.0}));
}

TEST_F(LevelGraphModelTest, OnlyLevelsAboveZeroCount)
{
    EXPECT_EQ(
        LevelGraphModel::levelDomain(pointsAt({-200.0, 0.0, 60.0, 70.0})), (Domain {50.0, 80.0}));
    EXPECT_EQ(LevelGraphModel::levelDomain(pointsAt({-200.0, 0.0, -3.0})), (Domain {40.0, 100.0}));
}

TEST_F(LevelGraphModelTest, AWideScaleIsMarkedEveryTwentyDecibels)
{
    const auto wide = LevelGraphModel::levelDomain(pointsAt({30.0, 95.0}));
    ASSERT_EQ(wide, (Domain {20.0, 100.0}));
    EXPECT_EQ(LevelGraphModel::tickStep(wide), 20.0);
    EXPECT_EQ(LevelGraphModel::tickLevels(wide), (std::vector<double> {20, 40, 60, 80, 100}));

    EXPECT_EQ(LevelGraphModel::tickStep(Domain {50.0, 90.0}), 10.0);
    EXPECT_EQ(LevelGraphModel::tickLevels(Domain {25.0, 55.0}), (std::vector<double> {30, 40, 50}));
}

TEST_F(LevelGraphModelTest, OnlyTheLastGraphDurationIsDrawn)
{
    auto model = make(AppModel::Mode::inert);
    LevelGraphModel graph;
    show(graph, *model);
    graph.setPlotWidth(600.0);
    graph.setPlotHeight(150.0);
    feed(*model, 70.0, 70.0);

    const auto& points = model->meter().graphPoints();
    const auto window = LevelGraphModel::span(points, 60.0, clock);
    const auto inside = LevelGraphModel::pointsInside(points, window);
    ASSERT_LT(inside.size(), points.size());
    ASSERT_EQ(graph.linePoints().size(), static_cast<qsizetype>(inside.size()));
    EXPECT_GE(graph.linePoints().front().x(), 0.0);
    // Points come four a second or slower: the first lies within one period of the left edge.
    EXPECT_LE(graph.linePoints().front().x(), 600.0 * 0.3 / 60.0);
    EXPECT_DOUBLE_EQ(graph.linePoints().back().x(), 600.0);
    EXPECT_TRUE(graph.hasNewestPoint());
    EXPECT_EQ(graph.newestDot().center(), graph.newestPoint());
}

TEST_F(LevelGraphModelTest, LevelsMapOntoThePlotAndSilenceRunsAlongTheBottom)
{
    auto model = make(AppModel::Mode::inert);
    LevelGraphModel graph;
    show(graph, *model);
    graph.setPlotWidth(300.0);
    graph.setPlotHeight(100.0);
    feed(*model, 60.0, 2.0);
    feed(*model, 80.0, 2.0);
    feed(*model, -200.0, 1.0);
    ASSERT_EQ(graph.domainLow(), 50.0);
    ASSERT_EQ(graph.domainHigh(), 90.0);

    const auto line = graph.linePoints();
    EXPECT_DOUBLE_EQ(line.front().y(), 75.0);
    EXPECT_DOUBLE_EQ(line[line.size() - 6].y(), 25.0);
    EXPECT_DOUBLE_EQ(line.back().y(), 100.0);

    std::vector<double> tickHeights;
    for (const auto& tick : graph.tickList())
        tickHeights.push_back(tick.y);
    EXPECT_EQ(tickHeights, (std::vector<double> {100.0, 75.0, 50.0, 25.0, 0.0}));
    EXPECT_EQ(graph.tickList().front().text, "50");
    EXPECT_EQ(graph.tickList().back().text, "90");
}

TEST_F(LevelGraphModelTest, MarkersOutsideTheWindowAreLeftOutAndLabelsStayInside)
{
    auto model = make(AppModel::Mode::inert);
    LevelGraphModel graph;
    show(graph, *model);
    graph.setPlotWidth(400.0);
    graph.setPlotHeight(100.0);
    QFont font;
    font.setPixelSize(10);
    graph.setMarkerFont(font);

    feed(*model, 70.0, 10.0);
    model->meter().addMarker("Q 1 House to half", addingSeconds(clock, -2.0));
    feed(*model, 70.0, 61.0);
    model->meter().addMarker("Q 2", addingSeconds(clock, -30.0));
    model->meter().addMarker("Q 3 Blackout and sound cue", addingSeconds(clock, -0.1));
    feed(*model, 70.0, 0.3);

    ASSERT_EQ(graph.markerList().size(), 2u);
    EXPECT_EQ(graph.markerList()[0].label, "Q 2");
    const auto& last = graph.markerList()[1];
    const double width = QFontMetricsF(font).horizontalAdvance(last.label);
    EXPECT_GT(last.x, 390.0);
    EXPECT_LT(last.labelX, last.x);
    EXPECT_NEAR(last.labelX + width, 400.0, 1e-9);
}

TEST_F(LevelGraphModelTest, WithoutPointsTheWindowEndsNow)
{
    auto model = make(AppModel::Mode::inert);
    LevelGraphModel graph;
    graph.setClock([this] { return clock; });
    show(graph, *model);
    graph.setPlotWidth(600.0);
    model->meter().addMarker("Q 5", addingSeconds(clock, -15.0));
    model->meter().addMarker("Q 4", addingSeconds(clock, -75.0));
    ASSERT_EQ(graph.markerList().size(), 1u);
    EXPECT_DOUBLE_EQ(graph.markerList()[0].x, 450.0);
    EXPECT_FALSE(graph.hasNewestPoint());
    EXPECT_EQ(graph.domainLow(), 40.0);
}

TEST_F(LevelGraphModelTest, SpokenNameCarriesTheDuration)
{
    auto model = make(AppModel::Mode::inert);
    LevelGraphModel graph;
    show(graph, *model);
    EXPECT_EQ(graph.accessibleName(), "Sound level over the last 60 seconds");
    QSignalSpy changes(&graph, &LevelGraphModel::accessibleNameChanged);
    model->meter().setGraphDuration(30.0);
    EXPECT_EQ(graph.accessibleName(), "Sound level over the last 30 seconds");
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(LevelGraphModelTest, ARepeatedRefreshNotifiesNothing)
{
    auto model = make(AppModel::Mode::inert);
    LevelGraphModel graph;
    show(graph, *model);
    graph.setPlotWidth(600.0);
    graph.setPlotHeight(150.0);
    feed(*model, 70.0, 3.0);
    QSignalSpy line(&graph, &LevelGraphModel::lineChanged);
    QSignalSpy scale(&graph, &LevelGraphModel::scaleChanged);
    QSignalSpy markers(&graph, &LevelGraphModel::markersChanged);
    graph.setPlotWidth(600.0);
    model->meter().addMarker("Q 7", addingSeconds(clock, -1.0));
    EXPECT_EQ(markers.count(), 1);
    EXPECT_EQ(line.count(), 0);
    EXPECT_EQ(scale.count(), 0);
}
