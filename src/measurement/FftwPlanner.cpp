#include "measurement/FftwPlanner.h"

namespace ostrel {

std::mutex& fftwPlannerMutex()
{
    static std::mutex mutex;
    return mutex;
}

} // namespace ostrel
