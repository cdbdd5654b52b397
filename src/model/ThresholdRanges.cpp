#include "model/ThresholdRanges.h"

#include <QtGlobal>

namespace ostrel::ThresholdRanges {

namespace {

ThresholdRange formed(double lower, double upper, const char* which)
{
    if (!(lower <= upper))
        qFatal("The %s threshold's range %g ... %g can't be formed", which, lower, upper);
    return {lower, upper};
}

} // namespace

ThresholdRange elevated(double highThreshold)
{
    return formed(lowest, highThreshold - step, "elevated");
}

ThresholdRange high(double elevatedThreshold)
{
    return formed(elevatedThreshold + step, highest, "high");
}

} // namespace ostrel::ThresholdRanges
