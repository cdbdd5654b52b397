#pragma once

// A program's output, line by line.
#include <sstream>
#include <string>
#include <vector>

namespace ostrel::testsupport {

inline std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

} // namespace ostrel::testsupport
