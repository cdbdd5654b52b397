#include "measurement/Spectrum.h"

#include <cmath>

namespace ostrel {

double Spectrum::exactCenter(int index) noexcept
{
    return 1000.0 * std::pow(10.0, (index - 17) / 10.0);
}

} // namespace ostrel
