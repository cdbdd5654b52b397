#include "views/sessions/SessionButtonModel.h"

#include <chrono>
#include <cmath>

#include "views/components/Theme.h"

namespace ostrel {

SessionButtonModel::SessionButtonModel(QObject* parent)
    : ViewModel(parent), clock_([] { return std::chrono::system_clock::now(); })
{
    ticker_.setInterval(1000);
    connect(&ticker_, &QTimer::timeout, this, &SessionButtonModel::tick);
}

void SessionButtonModel::setClock(Clock clock)
{
    clock_ = std::move(clock);
    tick();
}

QString SessionButtonModel::elapsed(double seconds)
{
    const auto total = static_cast<long long>(std::floor(std::max(seconds, 0.0)));
    return QStringLiteral("%1:%2:%3")
        .arg(total / 3600)
        .arg(total / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(total % 60, 2, 10, QLatin1Char('0'));
}

QString SessionButtonModel::helpText() const
{
    if (!isRunning()) return QStringLiteral("Start a new show session (Ctrl+N)");
    return QStringLiteral("End \u201C") + session_->name + QStringLiteral("\u201D");
}

QString SessionButtonModel::accessibleName() const
{
    return isRunning() ? QStringLiteral("End session ") + session_->name : startTitle();
}

int SessionButtonModel::dotColorRole() const
{
    return static_cast<int>(Theme::Role::red);
}

void SessionButtonModel::trigger()
{
    if (!appModel_) return;
    if (appModel_->hasActiveSession())
        appModel_->endSession();
    else
        appModel_->requestNewSession();
}

void SessionButtonModel::attach()
{
    watch(appModel_);
    if (appModel_)
        track(connect(appModel_, &AppModel::sessionChanged, this, [this] { refresh(); }));
}

void SessionButtonModel::refresh()
{
    session_ = appModel_ ? appModel_->sessions().activeSession() : std::nullopt;
    // Redrawn each second only while a show runs.
    if (session_)
        ticker_.start();
    else
        ticker_.stop();
    emit changed();
    tick();
}

void SessionButtonModel::tick()
{
    const QString text = session_ ? elapsed(secondsBetween(session_->start, clock_())) : QString();
    if (text == elapsedText_) return;
    elapsedText_ = text;
    emit elapsedTextChanged();
}

} // namespace ostrel
