#pragma once

// The top of the chat: who is in the crew, or that nobody has joined yet.
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CrewHeaderModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    Q_PROPERTY(QString stationsText READ stationsText NOTIFY stationsTextChanged)
    Q_PROPERTY(int maximumLines READ maximumLines CONSTANT)
    Q_PROPERTY(double padding READ padding CONSTANT)

public:
    explicit CrewHeaderModel(QObject* parent = nullptr);

    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &CrewHeaderModel::crewChanged); }

    static QString stationsText(const QStringList& stations);

    QString stationsText() const { return stationsText_; }
    int maximumLines() const { return 2; }
    double padding() const { return 12.0; }

signals:
    void crewChanged();
    void stationsTextChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<CrewLink> crew_;
    QString stationsText_;
};

} // namespace ostrel
