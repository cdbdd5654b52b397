#include "qlab/TimecodeText.h"

#include <QRegularExpression>
#include <QString>

namespace ostrel {

std::optional<std::string> timecodeText(std::string_view text)
{
    // Not std::regex: GCC 12's regex trips -Wmaybe-uninitialized in the sanitizer builds.
    static const QRegularExpression pattern(QStringLiteral(R"(\d{1,2}:\d{2}:\d{2}[:;]\d{2})"));
    const auto match
        = pattern.match(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    if (!match.hasMatch()) return std::nullopt;
    return match.captured(0).toStdString();
}

} // namespace ostrel
