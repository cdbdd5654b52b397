#include "updates/AppVersion.h"

#include <vector>

namespace ostrel::AppVersion {

namespace {

enum class Kind { number, text, separator };

struct Segment {
    Kind kind;
    QString text;
};

Kind kindOf(QChar c)
{
    if (c.isDigit()) return Kind::number;
    if (c == u'.' || c == u'-' || c == u'_' || c == u'+' || c.isSpace()) return Kind::separator;
    return Kind::text;
}

std::vector<Segment> split(const QString& version)
{
    std::vector<Segment> segments;
    for (const QChar c : version.trimmed()) {
        const Kind kind = kindOf(c);
        // Each separator stands alone; digits and letters gather into runs.
        if (segments.empty() || segments.back().kind != kind || kind == Kind::separator)
            segments.push_back({kind, QString()});
        segments.back().text += c;
    }
    return segments;
}

// Digits compared as numbers of any length: no overflow on a long build number.
int compareNumbers(QString a, QString b)
{
    while (a.size() > 1 && a.front() == u'0')
        a.remove(0, 1);
    while (b.size() > 1 && b.front() == u'0')
        b.remove(0, 1);
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
    return QString::compare(a, b);
}

int sign(int value)
{
    return (value > 0) - (value < 0);
}

// A version that goes on after the other ends: newer when it goes on with a number or a
// separator ("1.0.1" after "1.0"), older when with letters ("1.0b2" after "1.0").
int tail(const std::vector<Segment>& longer, std::size_t from)
{
    for (std::size_t i = from; i < longer.size(); ++i) {
        if (longer[i].kind == Kind::text) return -1;
        if (longer[i].kind == Kind::number) return 1;
    }
    return 0; // only separators left: "1.0." is "1.0"
}

} // namespace

int compare(const QString& a, const QString& b)
{
    const std::vector<Segment> left = split(a);
    const std::vector<Segment> right = split(b);
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        const Segment& l = left[i];
        const Segment& r = right[i];
        if (l.kind == r.kind) {
            int order = 0;
            if (l.kind == Kind::number)
                order = compareNumbers(l.text, r.text);
            else if (l.kind == Kind::text)
                order = QString::compare(l.text, r.text);
            if (order != 0) return sign(order);
            continue;
        }
        // A number outranks letters and a separator ("1.1" after "1.a"); letters are the oldest.
        if (l.kind == Kind::number) return 1;
        if (r.kind == Kind::number) return -1;
        return l.kind == Kind::text ? -1 : 1;
    }
    if (left.size() > right.size()) return tail(left, common);
    if (right.size() > left.size()) return -tail(right, common);
    return 0;
}

} // namespace ostrel::AppVersion
