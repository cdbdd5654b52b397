#include "views/main/ContentModel.h"

#include <QGuiApplication>
#include <QPalette>

#include "model/AppearanceMode.h"

namespace ostrel {

ContentModel::ContentModel(QObject* parent)
    : ViewModel(parent), systemIsDark_([] {
          // Qt 6.4 has no colour-scheme query; the desktop's palette tells light from dark.
          return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
      })
{
}

void ContentModel::setSystemIsDark(std::function<bool()> systemIsDark)
{
    systemIsDark_ = std::move(systemIsDark);
    refresh();
}

void ContentModel::dismissError()
{
    if (AppModel* model = appModel_) model->setErrorMessage(std::nullopt);
}

void ContentModel::start()
{
    if (AppModel* model = appModel_) model->start();
}

void ContentModel::resetStatistics()
{
    if (AppModel* model = appModel_) model->meter().resetStatistics();
}

void ContentModel::attach()
{
    const auto update = [this] { refresh(); };
    watch(appModel_);
    if (!appModel_) return;
    track(connect(appModel_, &AppModel::errorMessageChanged, this, update));
    track(connect(
        &appModel_->settings().display(), &DisplaySettings::appearanceChanged, this, update));
}

void ContentModel::refresh()
{
    AppModel* model = appModel_;
    const AppearanceMode appearance
        = model ? model->settings().display().appearance() : AppearanceMode::system;
    const bool dark = appearance == AppearanceMode::dark
        || (appearance == AppearanceMode::system && systemIsDark_());
    if (dark != isDark_) {
        isDark_ = dark;
        emit isDarkChanged();
    }

    const bool shows = model && model->hasError();
    const QString text = model ? model->errorMessage() : QString();
    if (shows != showsError_ || text != errorText_) {
        showsError_ = shows;
        errorText_ = text;
        emit errorChanged();
    }
}

} // namespace ostrel
