#pragma once

// Orders names as people read them: "Input 2" before "Input 10", case aside. QCollator's
// numeric mode depends on ICU and the process locale, which a station started from a service
// or a test may not have.
#include <QString>

namespace ostrel::NaturalOrder {

// Negative, zero or positive, like a comparison function.
int compare(const QString& a, const QString& b);

} // namespace ostrel::NaturalOrder
