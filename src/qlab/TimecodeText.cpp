#include "qlab/TimecodeText.h"

#include <regex>

namespace ostrel {

std::optional<std::string> timecodeText(std::string_view text)
{
    static const std::regex pattern(R"(\d{1,2}:\d{2}:\d{2}[:;]\d{2})");
    std::match_results<std::string_view::const_iterator> match;
    if (!std::regex_search(text.begin(), text.end(), match, pattern)) return std::nullopt;
    return match.str();
}

} // namespace ostrel
