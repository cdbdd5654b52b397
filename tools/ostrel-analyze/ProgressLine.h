#pragma once

// How far a long analysis has got, as one line on a terminal that is rewritten in place and
// cleared at the end. Off when standard error is not a terminal, so a log file or a pipe never
// gets carriage returns.
#include <optional>
#include <ostream>
#include <string>

namespace ostrel::analyze {

class ProgressLine {
public:
    // Inputs known to be at most this long finish too quickly to need progress.
    static constexpr double minimumSeconds = 60.0;

    // `totalSeconds` absent: the length is unknown (a pipe), and progress counts seconds once
    // more than `minimumSeconds` have gone by.
    ProgressLine(std::ostream& out, bool terminal, std::optional<double> totalSeconds);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Writes only when the text shown would change.
    void update(double processedSeconds);
    // Removes the line; call before writing anything else to the same stream.
    void clear();

private:
    std::ostream& out_;
    bool enabled_;
    std::optional<double> totalSeconds_;
    std::string shown_;
};

} // namespace ostrel::analyze
