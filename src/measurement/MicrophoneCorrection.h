#pragma once

// A measurement microphone's frequency response, read from its calibration file. The
// correction is relative to 1 kHz, so a reading made with a 1 kHz calibrator stays true.
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <QJsonObject>

namespace ostrel {

class MicrophoneCorrection {
public:
    struct Point {
        double frequency = 0.0; // Hz
        double response = 0.0; // dB
        bool operator==(const Point&) const = default;
    };

    enum class ParseError { noData, tooFewPoints, implausibleValues };

    // Sorts the points by frequency.
    MicrophoneCorrection(std::string name, std::vector<Point> points,
        std::optional<double> sensitivityFactor = std::nullopt);

    static std::variant<MicrophoneCorrection, ParseError> parsing(
        std::string_view text, std::string name);
    static std::string_view message(ParseError error);
    static std::string_view unreadableFileMessage();

    const std::string& name() const noexcept { return name_; }
    const std::vector<Point>& points() const noexcept { return points_; }
    std::optional<double> sensitivityFactor() const noexcept { return sensitivityFactor_; }

    // Lowest and highest point frequency.
    std::pair<double, double> frequencyRange() const noexcept;
    double rawResponse(double frequency) const noexcept;
    // Relative to 1 kHz, clamped to -20...20 dB.
    double response(double frequency) const noexcept;
    // The power factor that undoes the response, 0.01...100.
    double powerGain(double frequency) const noexcept;

    // JSON form kept in settings: name, points (frequency, response), sensitivityFactor.
    QJsonObject toJson() const;
    static std::optional<MicrophoneCorrection> fromJson(const QJsonObject& object);

    bool operator==(const MicrophoneCorrection&) const = default;

private:
    std::string name_;
    std::vector<Point> points_;
    std::optional<double> sensitivityFactor_;
};

} // namespace ostrel
