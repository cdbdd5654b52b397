#pragma once

// The Crew page of the settings: what this computer is in a crew, the name it goes by, how its
// link stands, which primary a secondary connects to, and clearing this copy of the chat.
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "network/CrewSettings.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CrewSettingsModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    Q_PROPERTY(
        ostrel::CrewSettings* settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(QStringList roleChoices READ roleChoices CONSTANT)
    Q_PROPERTY(int roleIndex READ roleIndex WRITE setRoleIndex NOTIFY valuesChanged)
    Q_PROPERTY(QString summary READ summary NOTIFY valuesChanged)
    Q_PROPERTY(QString stationName READ stationName WRITE setStationName NOTIFY valuesChanged)
    Q_PROPERTY(bool showsStatus READ showsStatus NOTIFY valuesChanged)
    Q_PROPERTY(bool showsPrimarySection READ showsPrimarySection NOTIFY valuesChanged)
    Q_PROPERTY(QStringList primaryChoices READ primaryChoices NOTIFY valuesChanged)
    Q_PROPERTY(int primaryIndex READ primaryIndex WRITE setPrimaryIndex NOTIFY valuesChanged)
    Q_PROPERTY(bool showsMessagesSection READ showsMessagesSection NOTIFY valuesChanged)
    Q_PROPERTY(QString roleTitle READ roleTitle CONSTANT)
    Q_PROPERTY(QString stationNameTitle READ stationNameTitle CONSTANT)
    Q_PROPERTY(QString statusTitle READ statusTitle CONSTANT)
    Q_PROPERTY(QString primarySectionTitle READ primarySectionTitle CONSTANT)
    Q_PROPERTY(QString connectToTitle READ connectToTitle CONSTANT)
    Q_PROPERTY(QString messagesSectionTitle READ messagesSectionTitle CONSTANT)
    Q_PROPERTY(QString clearTitle READ clearTitle CONSTANT)
    Q_PROPERTY(QString clearFooter READ clearFooter CONSTANT)

public:
    explicit CrewSettingsModel(QObject* parent = nullptr);

    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &CrewSettingsModel::crewChanged); }
    CrewSettings* settings() const { return settings_.data(); }
    void setSettings(CrewSettings* value)
    {
        setSource(settings_, value, &CrewSettingsModel::settingsChanged);
    }

    // The role's summary; a role in a crew adds that anyone on the network can join.
    static QString summary(CrewRole role);
    // The stored value first if it is empty ("First one found"), then the primaries found, then a
    // stored one not among them, marked "(not found)". Titles and values, index for index.
    static QStringList primaryTitles(const QString& stored, const QStringList& available);
    static QStringList primaryValues(const QString& stored, const QStringList& available);

    static QStringList roleChoices();
    int roleIndex() const;
    void setRoleIndex(int index);
    QString summary() const { return summary(role()); }
    QString stationName() const { return settings_ ? settings_->stationName() : QString(); }
    void setStationName(const QString& value);
    bool isInCrew() const { return role() != CrewRole::standalone; }
    bool showsStatus() const { return isInCrew(); }
    bool showsMessagesSection() const { return isInCrew(); }
    bool showsPrimarySection() const { return role() == CrewRole::secondary; }
    QStringList primaryChoices() const;
    int primaryIndex() const;
    void setPrimaryIndex(int index);

    QString roleTitle() const { return QStringLiteral("This Computer Is"); }
    QString stationNameTitle() const { return QStringLiteral("Station Name"); }
    QString statusTitle() const { return QStringLiteral("Status"); }
    QString primarySectionTitle() const { return QStringLiteral("Primary"); }
    QString connectToTitle() const { return QStringLiteral("Connect To"); }
    QString messagesSectionTitle() const { return QStringLiteral("Messages"); }
    QString clearTitle() const { return QStringLiteral("Clear Chat"); }
    QString clearFooter() const
    {
        return QStringLiteral("Clears this computer's copy only. The chat isn't saved when "
                              "Ostrel Live quits.");
    }

    Q_INVOKABLE void clearChat();

signals:
    void crewChanged();
    void settingsChanged();
    void valuesChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    CrewRole role() const { return settings_ ? settings_->role() : CrewRole::standalone; }
    QStringList available() const { return crew_ ? crew_->availablePrimaries() : QStringList(); }

    QPointer<CrewLink> crew_;
    QPointer<CrewSettings> settings_;
};

} // namespace ostrel
