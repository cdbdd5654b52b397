#include "ostrel-analyze/ProgressLine.h"

#include <algorithm>
#include <cmath>

namespace ostrel::analyze {

ProgressLine::ProgressLine(std::ostream& out, bool terminal, std::optional<double> totalSeconds)
    : out_(out),
      enabled_(terminal && (!totalSeconds || *totalSeconds > minimumSeconds)),
      totalSeconds_(totalSeconds)
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::update(double processedSeconds)
{
    if (!enabled_) return;
    std::string text;
    if (totalSeconds_) {
        // Never 100 % before the end: the container's duration is only an estimate for some
        // formats.
        const double percent
            = std::clamp(std::floor(processedSeconds / *totalSeconds_ * 100.0), 0.0, 99.0);
        text = "ostrel-analyze: " + std::to_string(static_cast<int>(percent)) + "%";
    } else {
        if (processedSeconds <= minimumSeconds) return;
        text = "ostrel-analyze: " + std::to_string(static_cast<long long>(processedSeconds))
            + " s analysed";
    }
    if (text == shown_) return;
    // Padding covers the rest of a longer line shown before.
    std::string line = "\r" + text;
    if (shown_.size() > text.size()) line.append(shown_.size() - text.size(), ' ');
    out_ << line << std::flush;
    shown_ = std::move(text);
}

void ProgressLine::clear()
{
    if (shown_.empty()) return;
    out_ << '\r' << std::string(shown_.size(), ' ') << '\r' << std::flush;
    shown_.clear();
}

} // namespace ostrel::analyze
