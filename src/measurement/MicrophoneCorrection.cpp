#include "measurement/MicrophoneCorrection.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include <QJsonArray>
#include <QJsonValue>
#include <QString>

namespace ostrel {

namespace {

constexpr double referenceFrequency = 1000.0;
constexpr double responseLimit = 20.0;
constexpr double implausibleResponse = 40.0;
constexpr double implausibleFrequency = 100000.0;

bool isWhiteSpace(char c) noexcept
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

std::string_view trimmed(std::string_view text) noexcept
{
    while (!text.empty() && isWhiteSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isWhiteSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

// from_chars ignores the locale, so a German system still reads "1.5" as one and a half.
std::optional<double> decimal(std::string_view field) noexcept
{
    // from_chars refuses a leading plus, which some calibration tools write.
    if (field.size() > 1 && field.front() == '+' && field[1] != '-' && field[1] != '+')
        field.remove_prefix(1);
    if (field.empty()) return std::nullopt;
    double value = 0.0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<double> firstNumberAfterEquals(std::string_view line) noexcept
{
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    const std::string_view rest = trimmed(line.substr(equals + 1));
    std::size_t length = 0;
    while (length < rest.size()) {
        const char c = rest[length];
        if ((c < '0' || c > '9') && c != '-' && c != '+' && c != '.') break;
        ++length;
    }
    return decimal(rest.substr(0, length));
}

bool mentionsSensFactor(std::string_view line)
{
    std::string lower(line);
    std::transform(lower.begin(), lower.end(), lower.begin(),
        [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower.find("sens factor") != std::string::npos;
}

bool isComment(std::string_view line) noexcept
{
    return line.empty() || std::string_view("*#\";/").find(line.front()) != std::string_view::npos;
}

std::optional<MicrophoneCorrection::Point> dataPoint(std::string_view line)
{
    std::string cleaned(line);
    std::replace(cleaned.begin(), cleaned.end(), ',', ' ');
    std::replace(cleaned.begin(), cleaned.end(), ';', ' ');

    std::string_view fields[2];
    int fieldCount = 0;
    const std::string_view rest(cleaned);
    std::size_t position = 0;
    while (fieldCount < 2 && position < rest.size()) {
        const auto start = rest.find_first_not_of(" \t", position);
        if (start == std::string_view::npos) break;
        auto end = rest.find_first_of(" \t", start);
        if (end == std::string_view::npos) end = rest.size();
        fields[fieldCount++] = rest.substr(start, end - start);
        position = end;
    }
    if (fieldCount < 2) return std::nullopt;

    const auto frequency = decimal(fields[0]);
    const auto response = decimal(fields[1]);
    if (!frequency || !response) return std::nullopt;
    return MicrophoneCorrection::Point {*frequency, *response};
}

template <typename Visit> void forEachLine(std::string_view text, Visit visit)
{
    std::size_t start = 0;
    while (start <= text.size()) {
        const auto end = text.find_first_of("\r\n", start);
        if (end == std::string_view::npos) {
            visit(text.substr(start));
            return;
        }
        visit(text.substr(start, end - start));
        start = end + 1;
        if (text[end] == '\r' && start < text.size() && text[start] == '\n') ++start;
    }
}

void sortByFrequency(std::vector<MicrophoneCorrection::Point>& points)
{
    std::stable_sort(points.begin(), points.end(),
        [](const auto& a, const auto& b) { return a.frequency < b.frequency; });
}

} // namespace

MicrophoneCorrection::MicrophoneCorrection(
    std::string name, std::vector<Point> points, std::optional<double> sensitivityFactor)
    : name_(std::move(name)), points_(std::move(points)), sensitivityFactor_(sensitivityFactor)
{
    sortByFrequency(points_);
}

std::variant<MicrophoneCorrection, MicrophoneCorrection::ParseError> MicrophoneCorrection::parsing(
    std::string_view text, std::string name)
{
    // Files saved by Windows tools often begin with a byte-order mark.
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    std::vector<Point> found;
    std::optional<double> sensitivity;
    forEachLine(text, [&](std::string_view raw) {
        const std::string_view line = trimmed(raw);
        // The sensitivity usually sits in a quoted header line that is skipped below.
        if (mentionsSensFactor(line)) {
            if (const auto value = firstNumberAfterEquals(line)) sensitivity = value;
        }
        if (isComment(line)) return;
        if (const auto point = dataPoint(line)) found.push_back(*point);
    });

    if (found.empty()) return ParseError::noData;

    sortByFrequency(found);
    std::vector<Point> kept;
    kept.reserve(found.size());
    for (const Point& point : found) {
        if (point.frequency <= 0.0) continue;
        if (!kept.empty() && kept.back().frequency == point.frequency) continue;
        kept.push_back(point);
    }

    if (kept.size() < 3) return ParseError::tooFewPoints;
    const bool plausible = std::all_of(kept.begin(), kept.end(), [](const Point& point) {
        return std::abs(point.response) < implausibleResponse
            && point.frequency < implausibleFrequency;
    });
    if (!plausible) return ParseError::implausibleValues;

    return MicrophoneCorrection(std::move(name), std::move(kept), sensitivity);
}

std::string_view MicrophoneCorrection::message(ParseError error)
{
    switch (error) {
    case ParseError::noData:
        return "That file doesn't contain frequency and level columns.";
    case ParseError::tooFewPoints:
        return "That file has too few frequencies to describe a microphone.";
    case ParseError::implausibleValues:
        return "That file's levels are outside the range of a measurement microphone.";
    }
    return {};
}

std::string_view MicrophoneCorrection::unreadableFileMessage()
{
    return "That file couldn't be read as text.";
}

std::pair<double, double> MicrophoneCorrection::frequencyRange() const noexcept
{
    if (points_.empty()) return {0.0, 0.0};
    return {points_.front().frequency, points_.back().frequency};
}

double MicrophoneCorrection::rawResponse(double frequency) const noexcept
{
    if (points_.empty()) return 0.0;
    if (frequency <= points_.front().frequency) return points_.front().response;
    if (frequency >= points_.back().frequency) return points_.back().response;

    std::size_t lo = 0;
    std::size_t hi = points_.size() - 1;
    while (hi - lo > 1) {
        const std::size_t mid = (lo + hi) / 2;
        if (points_[mid].frequency <= frequency)
            lo = mid;
        else
            hi = mid;
    }
    const Point& a = points_[lo];
    const Point& b = points_[hi];
    return a.response
        + (b.response - a.response) * std::log(frequency / a.frequency)
        / std::log(b.frequency / a.frequency);
}

double MicrophoneCorrection::response(double frequency) const noexcept
{
    return std::clamp(
        rawResponse(frequency) - rawResponse(referenceFrequency), -responseLimit, responseLimit);
}

double MicrophoneCorrection::powerGain(double frequency) const noexcept
{
    return std::pow(10.0, -response(frequency) / 10.0);
}

QJsonObject MicrophoneCorrection::toJson() const
{
    QJsonArray points;
    for (const Point& point : points_)
        points.append(QJsonObject {{"frequency", point.frequency}, {"response", point.response}});
    QJsonObject object {{"name", QString::fromStdString(name_)}, {"points", points}};
    if (sensitivityFactor_) object.insert("sensitivityFactor", *sensitivityFactor_);
    return object;
}

std::optional<MicrophoneCorrection> MicrophoneCorrection::fromJson(const QJsonObject& object)
{
    const QJsonValue name = object.value("name");
    const QJsonValue points = object.value("points");
    if (!name.isString() || !points.isArray()) return std::nullopt;

    std::vector<Point> read;
    const QJsonArray array = points.toArray();
    read.reserve(static_cast<std::size_t>(array.size()));
    for (const QJsonValue& entry : array) {
        const QJsonObject point = entry.toObject();
        const QJsonValue frequency = point.value("frequency");
        const QJsonValue response = point.value("response");
        if (!frequency.isDouble() || !response.isDouble()) return std::nullopt;
        read.push_back({frequency.toDouble(), response.toDouble()});
    }

    std::optional<double> sensitivity;
    if (const QJsonValue value = object.value("sensitivityFactor"); value.isDouble())
        sensitivity = value.toDouble();
    return MicrophoneCorrection(name.toString().toStdString(), std::move(read), sensitivity);
}

} // namespace ostrel
