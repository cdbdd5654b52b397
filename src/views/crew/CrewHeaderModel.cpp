#include "views/crew/CrewHeaderModel.h"

namespace ostrel {

CrewHeaderModel::CrewHeaderModel(QObject* parent) : ViewModel(parent)
{
    refresh();
}

QString CrewHeaderModel::stationsText(const QStringList& stations)
{
    if (stations.isEmpty()) return QStringLiteral("Just you so far");
    return stations.join(QStringLiteral(" \u00B7 "));
}

void CrewHeaderModel::attach()
{
    watch(crew_);
    if (crew_) track(connect(crew_, &CrewLink::stationsChanged, this, [this] { refresh(); }));
}

void CrewHeaderModel::refresh()
{
    const QString text = stationsText(crew_ ? crew_->stations() : QStringList());
    if (text == stationsText_) return;
    stationsText_ = text;
    emit stationsTextChanged();
}

} // namespace ostrel
