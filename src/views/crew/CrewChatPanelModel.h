#pragma once

// The chat panel's composer: the draft and the "Urgent" toggle. Sending stamps the running cue and
// clears the draft; every urgent message is a fresh decision, so the toggle goes off after each
// one.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "views/components/Theme.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CrewChatPanelModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    // The running cue's label; empty when none runs.
    Q_PROPERTY(QString cueLabel READ cueLabel WRITE setCueLabel NOTIFY cueLabelChanged)
    Q_PROPERTY(QString draft READ draft WRITE setDraft NOTIFY draftChanged)
    Q_PROPERTY(bool sendsUrgent READ sendsUrgent WRITE setSendsUrgent NOTIFY sendsUrgentChanged)
    Q_PROPERTY(QString urgentHelp READ urgentHelp NOTIFY sendsUrgentChanged)
    Q_PROPERTY(int urgentColorRole READ urgentColorRole NOTIFY sendsUrgentChanged)
    Q_PROPERTY(QString prompt READ prompt CONSTANT)
    Q_PROPERTY(QString urgentTitle READ urgentTitle CONSTANT)
    Q_PROPERTY(QString urgentSymbol READ urgentSymbol CONSTANT)
    Q_PROPERTY(QString sendTitle READ sendTitle CONSTANT)
    Q_PROPERTY(QString sendSymbol READ sendSymbol CONSTANT)
    Q_PROPERTY(QString sendHelp READ sendHelp CONSTANT)
    Q_PROPERTY(int maximumLines READ maximumLines CONSTANT)
    Q_PROPERTY(double minimumWidth READ minimumWidth CONSTANT)
    Q_PROPERTY(double idealWidth READ idealWidth CONSTANT)

public:
    explicit CrewChatPanelModel(QObject* parent = nullptr);

    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &CrewChatPanelModel::crewChanged); }
    QString cueLabel() const { return cueLabel_; }
    void setCueLabel(const QString& value);
    QString draft() const { return draft_; }
    void setDraft(const QString& value);
    bool sendsUrgent() const { return sendsUrgent_; }
    void setSendsUrgent(bool value);

    QString urgentHelp() const;
    int urgentColorRole() const;
    QString prompt() const { return QStringLiteral("Message the crew"); }
    QString urgentTitle() const { return QStringLiteral("Urgent"); }
    QString urgentSymbol() const { return QStringLiteral("exclamationmark.triangle.fill"); }
    QString sendTitle() const { return QStringLiteral("Send"); }
    QString sendSymbol() const { return QStringLiteral("paperplane.fill"); }
    QString sendHelp() const { return QStringLiteral("Send (Return)"); }
    int maximumLines() const { return 4; }
    double minimumWidth() const { return 280.0; }
    double idealWidth() const { return 320.0; }

    // The draft to the whole crew, then a clean composer.
    Q_INVOKABLE void send();
    // The panel came into view or left it: arrivals stop or start counting as unread.
    Q_INVOKABLE void setShown(bool shown);

signals:
    void crewChanged();
    void cueLabelChanged();
    void draftChanged();
    void sendsUrgentChanged();

private:
    QPointer<CrewLink> crew_;
    QString cueLabel_;
    QString draft_;
    bool sendsUrgent_ = false;
};

} // namespace ostrel
