#include "views/sessions/NewSessionModel.h"

#include <QLocale>
#include <cmath>

#include "recording/RecordingLibrary.h"
#include "views/components/Theme.h"

namespace ostrel {

NewSessionModel::NewSessionModel(QObject* parent) : ViewModel(parent) { }

QString NewSessionModel::explanation(bool recordsAudio)
{
    if (recordsAudio)
        return QStringLiteral("Ostrel Live records the microphone's audio, the level, the spectrum "
                              "and every cue until you end the session, so you can replay the "
                              "show afterwards.");
    return QStringLiteral(
        "Ostrel Live records each cue and its sound level until you end the session. No audio is "
        "recorded.");
}

QString NewSessionModel::hours(double value)
{
    // One unit at most, its fraction dropped.
    if (value >= 1.0) {
        const auto whole = static_cast<long long>(std::floor(value));
        return whole == 1 ? QStringLiteral("1 hour") : QStringLiteral("%1 hours").arg(whole);
    }
    const auto minutes = static_cast<long long>(std::floor(std::max(value, 0.0) * 60.0));
    return minutes == 1 ? QStringLiteral("1 minute") : QStringLiteral("%1 minutes").arg(minutes);
}

std::optional<NewSessionModel::Estimate> NewSessionModel::estimate(
    bool recordsAudio, std::optional<qint64> freeBytes)
{
    if (!recordsAudio || !freeBytes) return std::nullopt;
    const double available
        = static_cast<double>(*freeBytes) / static_cast<double>(RecordingLibrary::bytesPerHour);
    // Decimal units, as file managers count.
    const QString space = QLocale().formattedDataSize(*freeBytes, 1, QLocale::DataSizeSIFormat);
    const bool isShort = available < 4.0;
    return Estimate {space + QStringLiteral(" free, enough for about ") + hours(available)
            + QStringLiteral(" of recording."),
        isShort ? QStringLiteral("exclamationmark.triangle.fill") : QStringLiteral("internaldrive"),
        static_cast<int>(isShort ? Theme::Role::orange : Theme::Role::secondary)};
}

void NewSessionModel::start(const QString& name)
{
    if (!appModel_) return;
    appModel_->startSession(name);
    appModel_->setPresentingNewSession(false);
}

void NewSessionModel::cancel()
{
    if (appModel_) appModel_->setPresentingNewSession(false);
}

void NewSessionModel::attach()
{
    watch(appModel_);
    if (!appModel_) return;
    // The space is asked for each time the sheet comes up.
    track(
        connect(appModel_, &AppModel::isPresentingNewSessionChanged, this, [this] { refresh(); }));
    track(connect(&appModel_->settings().sessions(), &SessionSettings::recordsSessionsChanged, this,
        [this] { refresh(); }));
}

void NewSessionModel::refresh()
{
    const bool records = appModel_ && appModel_->settings().sessions().recordsSessions();
    const QString text = explanation(records);
    const auto next = appModel_ ? estimate(records, appModel_->shows().library().availableSpace())
                                : std::nullopt;
    if (text == explanation_ && next == estimate_) return;
    explanation_ = text;
    estimate_ = next;
    emit changed();
}

} // namespace ostrel
