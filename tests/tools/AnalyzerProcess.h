#pragma once

// Runs the built ostrel-analyze binary the way a user would and collects what it printed.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ostrel::testing {

struct AnalyzerRun {
    int exitStatus = -1; // -1 unless the process exited normally
    std::string out;
    std::string err;
};

struct AnalyzerRunOptions {
    std::optional<std::filesystem::path> standardInput; // /dev/null when absent
    bool standardErrorOnTerminal = false; // a pseudo-terminal instead of a file
};

AnalyzerRun runAnalyzer(
    const std::vector<std::string>& arguments, const AnalyzerRunOptions& options = {});

} // namespace ostrel::testing
