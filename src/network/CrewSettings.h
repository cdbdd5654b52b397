#pragma once

// What this station is in a crew, the name it goes by, and the primary it prefers.
#include <QString>

#include "network/CrewRole.h"
#include "settings/SettingsGroup.h"

namespace ostrel {

class CrewSettings : public SettingsGroup {
    Q_OBJECT
    // The role's raw value: "standalone", "primary" or "secondary".
    Q_PROPERTY(QString role READ roleText WRITE setRoleText NOTIFY roleChanged)
    Q_PROPERTY(QString stationName READ stationName WRITE setStationName NOTIFY stationNameChanged)
    Q_PROPERTY(QString primary READ primary WRITE setPrimary NOTIFY primaryChanged)

public:
    static const Setting<CrewRole> roleKey;
    static const Setting<QString> stationNameKey;
    static const Setting<QString> primaryKey;

    explicit CrewSettings(SettingsStore& store, QObject* parent = nullptr);

    CrewRole role() const { return role_; }
    void setRole(CrewRole value);
    const QString& stationName() const { return stationName_; }
    void setStationName(const QString& value);
    // Empty: the first primary found.
    const QString& primary() const { return primary_; }
    void setPrimary(const QString& value);

signals:
    void roleChanged();
    void stationNameChanged();
    void primaryChanged();

private:
    QString roleText() const;
    // An unknown raw value is ignored.
    void setRoleText(const QString& raw);

    CrewRole role_;
    QString stationName_;
    QString primary_;
};

} // namespace ostrel
