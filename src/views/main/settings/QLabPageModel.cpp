#include "views/main/settings/QLabPageModel.h"

#include <algorithm>

#include "views/qlab/QLabStatusModel.h"

namespace ostrel {

QLabPageModel::QLabPageModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

void QLabPageModel::setMonitors(bool value)
{
    if (settings_) settings_->setEnabled(value);
}

void QLabPageModel::setHost(const QString& value)
{
    if (settings_) settings_->setHost(value);
}

QString QLabPageModel::port() const
{
    return QString::number(settings_ ? settings_->port() : QLabSettings::portKey.fallback);
}

void QLabPageModel::setPort(const QString& value)
{
    bool isNumber = false;
    const qint64 port = value.trimmed().toLongLong(&isNumber);
    if (settings_ && isNumber) settings_->setPort(port);
}

QString QLabPageModel::statusText() const
{
    return QLabStatusModel::text(qlab_ ? qlab_->state() : QLabClientState::off);
}

bool QLabPageModel::showsReconnect() const
{
    return monitors() && qlab_ && qlab_->state() != QLabClientState::connected;
}

void QLabPageModel::reconnect()
{
    if (showsReconnect()) qlab_->reconnect();
}

QStringList QLabPageModel::rateOptions()
{
    QStringList result;
    for (auto rate : TimecodeRates::all) {
        const auto title = TimecodeRates::title(rate);
        result << QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size()));
    }
    return result;
}

int QLabPageModel::rateIndex() const
{
    const auto rate = settings_ ? settings_->timecodeFallbackRate()
                                : QLabSettings::timecodeFallbackRateKey.fallback;
    const auto found = std::find(TimecodeRates::all.begin(), TimecodeRates::all.end(), rate);
    return static_cast<int>(found - TimecodeRates::all.begin());
}

void QLabPageModel::setRateIndex(int index)
{
    if (settings_ && index >= 0 && index < static_cast<int>(TimecodeRates::all.size()))
        settings_->setTimecodeFallbackRate(TimecodeRates::all[static_cast<std::size_t>(index)]);
}

void QLabPageModel::setWorkspace(const QString& value)
{
    if (settings_) settings_->setWorkspace(value);
}

void QLabPageModel::setPasscode(const QString& value)
{
    if (settings_) settings_->setPasscode(value);
}

void QLabPageModel::attach()
{
    watch(settings_);
    watch(qlab_);
    if (settings_)
        track(connect(settings_, &SettingsGroup::changed, this, &QLabPageModel::refresh));
    if (qlab_) track(connect(qlab_, &QLabClient::stateChanged, this, &QLabPageModel::refresh));
}

void QLabPageModel::refresh()
{
    emit valuesChanged();
}

} // namespace ostrel
