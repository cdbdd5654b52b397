#include "views/sessions/SessionSummaryModel.h"

#include "views/components/Theme.h"
#include "views/sessions/SessionText.h"

namespace ostrel {

SessionSummaryModel::SessionSummaryModel(QObject* parent) : ViewModel(parent) { }

SessionSummaryModel::Figures SessionSummaryModel::figures(const ShowSession& session, Date now)
{
    return {SessionText::duration(session.duration(now)),
        QLocale().toString(static_cast<qlonglong>(session.cues.size())),
        SessionText::decibels(session.maximumLevel()), SessionText::decibels(session.averageLeq())};
}

QString SessionSummaryModel::measuredWith(const QString& meterSetting)
{
    return QStringLiteral("Measured with ") + meterSetting + QStringLiteral(" weighting.");
}

int SessionSummaryModel::warningColorRole() const
{
    return static_cast<int>(Theme::Role::orange);
}

void SessionSummaryModel::done()
{
    if (appModel_) appModel_->setPresentedSummary(std::nullopt);
}

void SessionSummaryModel::selectForReplay()
{
    if (appModel_ && session_) appModel_->selectRecording(*session_);
}

void SessionSummaryModel::attach()
{
    watch(appModel_);
    if (!appModel_) return;
    track(connect(appModel_, &AppModel::presentedSummaryChanged, this, [this] { refresh(); }));
}

void SessionSummaryModel::refresh()
{
    session_ = appModel_ ? appModel_->presentedSummary() : std::nullopt;
    warning_ = appModel_ ? appModel_->recordingWarning().value_or(QString()) : QString();
    figures_ = session_ ? figures(*session_, session_->end.value_or(session_->start)) : Figures {};
    emit changed();
}

} // namespace ostrel
