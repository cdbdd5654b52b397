#include "station/AppSettings.h"

namespace ostrel {

AppSettings::AppSettings(QSettings& settings, std::chrono::milliseconds syncDelay, QObject* parent)
    : QObject(parent),
      store_(settings, syncDelay),
      measurement_(store_),
      input_(store_),
      display_(store_),
      qlab_(store_),
      sessions_(store_),
      dante_(store_),
      updates_(store_),
      mics_(store_),
      crew_(store_)
{
}

} // namespace ostrel
