#pragma once

// The big red banner of a secondary whose readings are not live: still looking for a primary, or
// cut off from the one it had. The main screen decides when it shows.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "network/CrewSettings.h"
#include "views/components/Theme.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class LostConnectionModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int bannerColorRole READ bannerColorRole CONSTANT)
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    Q_PROPERTY(
        ostrel::CrewSettings* settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(double scale READ scale WRITE setScale NOTIFY scaleChanged)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY textChanged)
    Q_PROPERTY(QString symbol READ symbol NOTIFY textChanged)
    Q_PROPERTY(QString title READ title NOTIFY textChanged)
    Q_PROPERTY(QString body READ body NOTIFY textChanged)
    Q_PROPERTY(double symbolSize READ symbolSize NOTIFY scaleChanged)
    Q_PROPERTY(double titleSize READ titleSize NOTIFY scaleChanged)
    Q_PROPERTY(double bodySize READ bodySize NOTIFY scaleChanged)

public:
    explicit LostConnectionModel(QObject* parent = nullptr);

    // Red, for what must not be missed.
    int bannerColorRole() const { return static_cast<int>(Theme::Role::red); }
    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &LostConnectionModel::crewChanged); }
    CrewSettings* settings() const { return settings_.data(); }
    void setSettings(CrewSettings* value)
    {
        setSource(settings_, value, &LostConnectionModel::settingsChanged);
    }
    double scale() const { return scale_; }
    void setScale(double value);

    // No primary in hand and none in sight.
    static bool isSearching(
        const std::optional<QString>& primaryName, const QStringList& available);
    // The primary's name, else the preferred one, else "the primary".
    static QString primaryName(const std::optional<QString>& primaryName, const QString& preferred);
    static QString title(bool searching, const QString& name);
    static QString body(bool searching);

    bool isSearching() const { return isSearching_; }
    QString symbol() const;
    QString title() const { return title_; }
    QString body() const { return body(isSearching_); }
    double symbolSize() const { return 40.0 * scale_; }
    double titleSize() const { return 30.0 * scale_; }
    double bodySize() const { return 15.0 * scale_; }

signals:
    void crewChanged();
    void settingsChanged();
    void scaleChanged();
    void textChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<CrewLink> crew_;
    QPointer<CrewSettings> settings_;
    double scale_ = 1.0;
    bool isSearching_ = true;
    QString title_;
};

} // namespace ostrel
