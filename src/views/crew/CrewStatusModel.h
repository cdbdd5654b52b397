#pragma once

// The crew's state in one coloured line: who this primary shares with, or how this secondary's
// link to its primary stands. Used at the top of the chat and in the settings.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "views/components/Theme.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CrewStatusModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    Q_PROPERTY(QString text READ text NOTIFY statusChanged)
    Q_PROPERTY(int colorRole READ colorRole NOTIFY statusChanged)
    // Why DNS-SD can't be used, said plainly under the status; empty while it works.
    Q_PROPERTY(QString problem READ problem NOTIFY statusChanged)
    Q_PROPERTY(int problemColorRole READ problemColorRole CONSTANT)

public:
    explicit CrewStatusModel(QObject* parent = nullptr);

    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &CrewStatusModel::crewChanged); }

    // The wording has no singular: "Sharing with 1".
    static QString text(const CrewLink::Status& status, bool isReceiving);
    static Theme::Role colorRole(const CrewLink::Status& status, bool isReceiving);

    QString text() const { return text_; }
    int colorRole() const { return static_cast<int>(colorRole_); }
    QString problem() const { return problem_; }
    static int problemColorRole() { return static_cast<int>(Theme::Role::orange); }

signals:
    void crewChanged();
    void statusChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<CrewLink> crew_;
    QString text_;
    QString problem_;
    Theme::Role colorRole_ = Theme::Role::secondary;
};

} // namespace ostrel
