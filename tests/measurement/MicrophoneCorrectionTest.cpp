#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <variant>
#include <vector>

#include <QJsonArray>
#include <QJsonObject>

#include "measurement/MicrophoneCorrection.h"

using namespace ostrel;

namespace {

using Point = MicrophoneCorrection::Point;
using ParseError = MicrophoneCorrection::ParseError;

MicrophoneCorrection parsed(std::string_view text)
{
    auto result = MicrophoneCorrection::parsing(text, "mic");
    if (const auto* error = std::get_if<ParseError>(&result)) {
        ADD_FAILURE() << "unexpected error: " << MicrophoneCorrection::message(*error);
        return MicrophoneCorrection("failed", {});
    }
    return std::get<MicrophoneCorrection>(std::move(result));
}

std::optional<ParseError> errorOf(std::string_view text)
{
    const auto result = MicrophoneCorrection::parsing(text, "mic");
    if (const auto* error = std::get_if<ParseError>(&result)) return *error;
    return std::nullopt;
}

} // namespace

TEST(MicrophoneCorrection, RowsSeparatedByBlanksCommasAndSemicolonsParseInOneFile)
{
    const auto correction = parsed("20 -3.5 12\n"
                                   "100,\t-1.25, 45\n"
                                   "1000;0.5;0\n"
                                   "5000 ,  2 ;  -30\n"
                                   "10000\t\t4.75\n");
    EXPECT_EQ(correction.name(), "mic");
    const std::vector<Point> expected {
        {20, -3.5}, {100, -1.25}, {1000, 0.5}, {5000, 2}, {10000, 4.75}};
    EXPECT_EQ(correction.points(), expected);
}

TEST(MicrophoneCorrection, AcceptsEveryKindOfLineEnding)
{
    const auto correction = parsed("50 1\r\n200 2\r800 3\n3000 4\r\n\r\n");
    const std::vector<Point> expected {{50, 1}, {200, 2}, {800, 3}, {3000, 4}};
    EXPECT_EQ(correction.points(), expected);
}

TEST(MicrophoneCorrection, HeadingWordsAndCommentLinesAreSkippedSilently)
{
    const auto correction = parsed("Frequency Level Phase\n"
                                   "* measured in an anechoic chamber 12 3\n"
                                   "# 30 7\n"
                                   "; 40 7\n"
                                   "// 50 7\n"
                                   "\"60 7\"\n"
                                   "Hz dB\n"
                                   "100Hz 3dB\n"
                                   "   \t \n"
                                   "100 1\n"
                                   "1000 0\n"
                                   "10000 -2\n"
                                   "last line of text\n");
    const std::vector<Point> expected {{100, 1}, {1000, 0}, {10000, -2}};
    EXPECT_EQ(correction.points(), expected);
}

TEST(MicrophoneCorrection, NumbersWithSignsAndWithoutLeadingDigitParse)
{
    const auto correction = parsed("+100 +.5\n1000 -.25\n1.5e3 1E-1\n");
    const std::vector<Point> expected {{100, 0.5}, {1000, -0.25}, {1500, 0.1}};
    EXPECT_EQ(correction.points(), expected);
}

TEST(MicrophoneCorrection, SensFactorIsReadFromAQuotedHeader)
{
    const auto correction = parsed("\"Sens Factor = -1.25dB, SERNO: 7000123\"\n"
                                   "20 1\n1000 0\n20000 -1\n");
    ASSERT_TRUE(correction.sensitivityFactor().has_value());
    EXPECT_DOUBLE_EQ(*correction.sensitivityFactor(), -1.25);
}

TEST(MicrophoneCorrection, SensFactorIsFoundInAnyCaseAndWithoutSpaces)
{
    const auto correction = parsed("SENS FACTOR=+3.5\n20 1\n1000 0\n20000 -1\n");
    ASSERT_TRUE(correction.sensitivityFactor().has_value());
    EXPECT_DOUBLE_EQ(*correction.sensitivityFactor(), 3.5);
}

TEST(MicrophoneCorrection, SensFactorWithoutNumberIsAbsent)
{
    EXPECT_FALSE(parsed("\"Sens Factor = unknown\"\n20 1\n1000 0\n20000 -1\n")
                     .sensitivityFactor()
                     .has_value());
    EXPECT_FALSE(
        parsed("\"Sens Factor -1.25\"\n20 1\n1000 0\n20000 -1\n").sensitivityFactor().has_value());
    EXPECT_FALSE(parsed("20 1\n1000 0\n20000 -1\n").sensitivityFactor().has_value());
}

TEST(MicrophoneCorrection, RowsAtTheSameFrequencyKeepTheFirst)
{
    const auto correction = parsed("1000 5\n20 1\n1000 -7\n20000 2\n1000 9\n");
    const std::vector<Point> expected {{20, 1}, {1000, 5}, {20000, 2}};
    EXPECT_EQ(correction.points(), expected);
}

TEST(MicrophoneCorrection, ZeroHertzRowsAreDroppedBeforeCounting)
{
    EXPECT_EQ(errorOf("0 1\n100 2\n1000 3\n"), ParseError::tooFewPoints);
    EXPECT_EQ(errorOf("-50 1\n100 2\n1000 3\n"), ParseError::tooFewPoints);

    const auto correction = parsed("0 9\n100 2\n1000 3\n5000 4\n");
    const std::vector<Point> expected {{100, 2}, {1000, 3}, {5000, 4}};
    EXPECT_EQ(correction.points(), expected);
}

TEST(MicrophoneCorrection, ThreePointsAreEnoughTwoAreTooFew)
{
    EXPECT_EQ(parsed("100 1\n1000 0\n10000 -1\n").points().size(), 3u);
    EXPECT_EQ(errorOf("100 1\n1000 0\n"), ParseError::tooFewPoints);
    EXPECT_EQ(errorOf("100 1\n100 2\n1000 0\n"), ParseError::tooFewPoints);
}

TEST(MicrophoneCorrection, ResponseOfFortyDecibelsIsImplausible)
{
    EXPECT_EQ(errorOf("100 40\n1000 0\n10000 -1\n"), ParseError::implausibleValues);
    EXPECT_EQ(errorOf("100 1\n1000 0\n10000 -40\n"), ParseError::implausibleValues);
    EXPECT_EQ(parsed("100 39.9\n1000 0\n10000 -39.9\n").points().size(), 3u);
}

TEST(MicrophoneCorrection, FrequencyOfOneHundredKilohertzIsImplausible)
{
    EXPECT_EQ(errorOf("100 1\n1000 0\n100000 -1\n"), ParseError::implausibleValues);
    EXPECT_EQ(parsed("100 1\n1000 0\n99999 -1\n").points().size(), 3u);
}

TEST(MicrophoneCorrection, TextWithoutNumberRowsHasNoData)
{
    EXPECT_EQ(errorOf(""), ParseError::noData);
    EXPECT_EQ(errorOf("\n\r\n  \n"), ParseError::noData);
    EXPECT_EQ(errorOf("Frequency Level\n# 100 1\n1000\n"), ParseError::noData);
}

TEST(MicrophoneCorrection, EveryErrorHasItsOwnMessage)
{
    const auto noData = MicrophoneCorrection::message(ParseError::noData);
    const auto tooFew = MicrophoneCorrection::message(ParseError::tooFewPoints);
    const auto implausible = MicrophoneCorrection::message(ParseError::implausibleValues);
    EXPECT_FALSE(noData.empty());
    EXPECT_NE(noData, tooFew);
    EXPECT_NE(tooFew, implausible);
    EXPECT_NE(noData, implausible);
    EXPECT_NE(MicrophoneCorrection::unreadableFileMessage(), noData);
}

TEST(MicrophoneCorrection, ConstructionSortsThePointsStably)
{
    const MicrophoneCorrection correction("mic", {{1000, 1}, {20, 2}, {1000, 3}, {500, 4}});
    const std::vector<Point> expected {{20, 2}, {500, 4}, {1000, 1}, {1000, 3}};
    EXPECT_EQ(correction.points(), expected);
}

TEST(MicrophoneCorrection, FrequencyRangeSpansThePoints)
{
    EXPECT_EQ(parsed("5000 1\n25 0\n18000 -1\n").frequencyRange(),
        (std::pair<double, double> {25, 18000}));
    EXPECT_EQ(
        MicrophoneCorrection("none", {}).frequencyRange(), (std::pair<double, double> {0, 0}));
}

TEST(MicrophoneCorrection, ResponseAtOneKilohertzIsZero)
{
    const char* files[] = {
        "20 -3\n1000 4.5\n20000 2\n",
        "20 -3\n900 1\n1200 6\n20000 2\n",
        "2000 7\n5000 8\n20000 9\n",
        "10 -12\n100 -6\n500 -2\n",
        "31.5 0.3\n63 0.1\n125 0\n250 -0.1\n500 0.2\n2000 1.1\n4000 2.4\n8000 3.9\n16000 -2\n",
    };
    for (const char* file : files) {
        const auto correction = parsed(file);
        EXPECT_NEAR(correction.response(1000), 0.0, 1e-12) << file;
        EXPECT_NEAR(correction.powerGain(1000), 1.0, 1e-12) << file;
    }
}

TEST(MicrophoneCorrection, ResponseIsRelativeToOneKilohertz)
{
    const auto correction = parsed("20 -3\n1000 4.5\n20000 2\n");
    EXPECT_NEAR(correction.response(20), -7.5, 1e-12);
    EXPECT_NEAR(correction.response(20000), -2.5, 1e-12);
    EXPECT_NEAR(correction.powerGain(20), std::pow(10.0, 0.75), 1e-9);
}

TEST(MicrophoneCorrection, RawResponseInterpolatesInLogFrequency)
{
    const MicrophoneCorrection correction("mic", {{100, 0}, {1000, 10}, {10000, -10}});
    EXPECT_NEAR(correction.rawResponse(std::sqrt(100.0 * 1000.0)), 5.0, 1e-12);
    EXPECT_NEAR(correction.rawResponse(std::sqrt(1000.0 * 10000.0)), 0.0, 1e-12);
    EXPECT_NEAR(correction.rawResponse(200), 10.0 * std::log10(2.0), 1e-12);
    EXPECT_NEAR(correction.rawResponse(2000), 10.0 - 20.0 * std::log10(2.0), 1e-12);
    EXPECT_DOUBLE_EQ(correction.rawResponse(100), 0.0);
    EXPECT_DOUBLE_EQ(correction.rawResponse(1000), 10.0);
    EXPECT_DOUBLE_EQ(correction.rawResponse(10000), -10.0);
}

TEST(MicrophoneCorrection, RawResponseIsFlatBeyondTheEnds)
{
    const MicrophoneCorrection correction("mic", {{100, 3}, {1000, 10}, {10000, -4}});
    EXPECT_DOUBLE_EQ(correction.rawResponse(99.9), 3.0);
    EXPECT_DOUBLE_EQ(correction.rawResponse(1), 3.0);
    EXPECT_DOUBLE_EQ(correction.rawResponse(0), 3.0);
    EXPECT_DOUBLE_EQ(correction.rawResponse(10001), -4.0);
    EXPECT_DOUBLE_EQ(correction.rawResponse(96000), -4.0);
    EXPECT_DOUBLE_EQ(MicrophoneCorrection("none", {}).rawResponse(1000), 0.0);
}

TEST(MicrophoneCorrection, ResponseBeyondTwentyDecibelsCountsAsTwenty)
{
    const MicrophoneCorrection correction("mic", {{100, -25}, {1000, 0}, {10000, 25}});
    EXPECT_DOUBLE_EQ(correction.response(100), -20.0);
    EXPECT_DOUBLE_EQ(correction.response(10000), 20.0);
    EXPECT_NEAR(correction.powerGain(100), 100.0, 1e-9);
    EXPECT_NEAR(correction.powerGain(10000), 0.01, 1e-12);
    EXPECT_NEAR(correction.response(std::sqrt(1000.0 * 10000.0)), 12.5, 1e-12);
}

TEST(MicrophoneCorrection, JsonRoundTripKeepsEverything)
{
    const MicrophoneCorrection withSensitivity(
        "UMIK-1 7001234", {{20, -1.5}, {1000, 0.25}, {20000, 3.125}}, -0.78);
    const auto restored = MicrophoneCorrection::fromJson(withSensitivity.toJson());
    ASSERT_TRUE(restored.has_value());
    EXPECT_EQ(*restored, withSensitivity);

    const MicrophoneCorrection withoutSensitivity("plain", {{31.5, 1}, {1000, 0}, {16000, -2}});
    const QJsonObject json = withoutSensitivity.toJson();
    EXPECT_FALSE(json.contains("sensitivityFactor"));
    const auto plain = MicrophoneCorrection::fromJson(json);
    ASSERT_TRUE(plain.has_value());
    EXPECT_EQ(*plain, withoutSensitivity);
    EXPECT_FALSE(plain->sensitivityFactor().has_value());
}

TEST(MicrophoneCorrection, JsonUsesNamedKeys)
{
    const QJsonObject json
        = MicrophoneCorrection("mic", {{20, -1}, {1000, 0}, {20000, 2}}, 1.5).toJson();
    EXPECT_EQ(json.value("name").toString(), QString("mic"));
    EXPECT_DOUBLE_EQ(json.value("sensitivityFactor").toDouble(), 1.5);
    const QJsonArray points = json.value("points").toArray();
    ASSERT_EQ(points.size(), 3);
    EXPECT_DOUBLE_EQ(points[2].toObject().value("frequency").toDouble(), 20000.0);
    EXPECT_DOUBLE_EQ(points[2].toObject().value("response").toDouble(), 2.0);
}

TEST(MicrophoneCorrection, FromJsonRejectsMissingPoints)
{
    QJsonObject json = MicrophoneCorrection("mic", {{20, -1}, {1000, 0}, {20000, 2}}).toJson();
    ASSERT_TRUE(MicrophoneCorrection::fromJson(json).has_value());
    json.remove("points");
    EXPECT_FALSE(MicrophoneCorrection::fromJson(json).has_value());
}

TEST(MicrophoneCorrection, FromJsonRejectsWrongTypes)
{
    const QJsonObject good
        = MicrophoneCorrection("mic", {{20, -1}, {1000, 0}, {20000, 2}}).toJson();

    QJsonObject noName = good;
    noName.remove("name");
    EXPECT_FALSE(MicrophoneCorrection::fromJson(noName).has_value());

    QJsonObject numericName = good;
    numericName.insert("name", 12);
    EXPECT_FALSE(MicrophoneCorrection::fromJson(numericName).has_value());

    QJsonObject pointsAsObject = good;
    pointsAsObject.insert("points", QJsonObject {});
    EXPECT_FALSE(MicrophoneCorrection::fromJson(pointsAsObject).has_value());

    QJsonObject pointWithoutResponse = good;
    QJsonArray points = good.value("points").toArray();
    points.append(QJsonObject {{"frequency", 30000}});
    pointWithoutResponse.insert("points", points);
    EXPECT_FALSE(MicrophoneCorrection::fromJson(pointWithoutResponse).has_value());

    QJsonObject pointWithText = good;
    QJsonArray textPoints = good.value("points").toArray();
    textPoints.append(QJsonObject {{"frequency", "30000"}, {"response", 1}});
    pointWithText.insert("points", textPoints);
    EXPECT_FALSE(MicrophoneCorrection::fromJson(pointWithText).has_value());
}

TEST(MicrophoneCorrection, ALeadingByteOrderMarkDoesNotHideTheFirstRow)
{
    const auto result = MicrophoneCorrection::parsing("\xEF\xBB\xBF"
                                                      "20 1.5\n1000 0\n20000 -2\n",
        "bom.txt");
    ASSERT_TRUE(std::holds_alternative<MicrophoneCorrection>(result));
    const auto& correction = std::get<MicrophoneCorrection>(result);
    ASSERT_EQ(correction.points().size(), 3u);
    EXPECT_EQ(correction.points().front().frequency, 20.0);
}

TEST(MicrophoneCorrection, AWindowsFileWithAByteOrderMarkCrLfCommentsAndASensitivityLineReadsWhole)
{
    const auto correction = parsed("\xEF\xBB\xBF\"Sens Factor =-0.82dB, SERNO: 8012345\"\r\n"
                                   "* Freq(Hz)\tdB\r\n"
                                   "// measured 2026\r\n"
                                   "20\t-1.50\r\n"
                                   "1000\t0.00\r\n"
                                   "20000\t2.25\r\n");
    ASSERT_EQ(correction.points().size(), 3u);
    // The mark doesn't cost the first point.
    EXPECT_EQ(correction.points().front().frequency, 20.0);
    EXPECT_EQ(correction.points().front().response, -1.5);
    EXPECT_EQ(correction.points().back().response, 2.25);
    ASSERT_TRUE(correction.sensitivityFactor().has_value());
    EXPECT_EQ(*correction.sensitivityFactor(), -0.82);
}

TEST(MicrophoneCorrection, ACommaSeparatesFieldsAndIsNoDecimalMark)
{
    // "1000,5" is the frequency 1000 and the response 5, as in a comma-separated file.
    const auto correction = parsed("100,1\n1000,5\n10000,2,90\n");
    ASSERT_EQ(correction.points().size(), 3u);
    EXPECT_EQ(correction.points()[1].frequency, 1000.0);
    EXPECT_EQ(correction.points()[1].response, 5.0);
}
