#include "settings/SettingsStore.h"

#include <QCoreApplication>

namespace ostrel {

namespace {

std::optional<QString> scalarText(const QVariant& value)
{
    if (!value.isValid() || value.isNull()) return std::nullopt;
    // A list or a map under a scalar key is of another type.
    const int type = value.typeId();
    if (type == QMetaType::QStringList || type == QMetaType::QVariantList
        || type == QMetaType::QVariantMap)
        return std::nullopt;
    return value.toString();
}

} // namespace

SettingsStore::SettingsStore(
    QSettings& settings, std::chrono::milliseconds syncDelay, QObject* parent)
    : QObject(parent), settings_(settings)
{
    syncTimer_.setSingleShot(true);
    syncTimer_.setInterval(syncDelay);
    connect(&syncTimer_, &QTimer::timeout, this, &SettingsStore::flush);
    if (auto* application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &SettingsStore::flush);
}

SettingsStore::~SettingsStore()
{
    flush();
}

std::optional<QString> SettingsStore::text(const QString& key) const
{
    if (const auto found = pending_.constFind(key); found != pending_.constEnd())
        return scalarText(*found);
    return scalarText(settings_.value(key));
}

void SettingsStore::write(const QString& key, const QVariant& value)
{
    pending_.insert(key, value);
    // Not restarted by later writes: a long drag still reaches the disk every `syncDelay`.
    if (!syncTimer_.isActive()) syncTimer_.start();
}

void SettingsStore::flush()
{
    syncTimer_.stop();
    if (pending_.isEmpty()) return;
    for (auto write = pending_.constBegin(); write != pending_.constEnd(); ++write) {
        if (write->isValid())
            settings_.setValue(write.key(), *write);
        else
            settings_.remove(write.key());
    }
    pending_.clear();
    settings_.sync();
    ++syncCount_;
}

} // namespace ostrel
