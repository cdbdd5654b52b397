#pragma once

// The red banners over the main screen, one per urgent message this station has still to
// acknowledge: the newest three, and a line counting the rest. A new one is announced to screen
// readers.
#include <QPointer>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "views/components/Theme.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class UrgentBannersModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int bannerColorRole READ bannerColorRole CONSTANT)
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    Q_PROPERTY(double scale READ scale WRITE setScale NOTIFY scaleChanged)
    Q_PROPERTY(QVariantList banners READ banners NOTIFY bannersChanged)
    Q_PROPERTY(bool showsOverflow READ showsOverflow NOTIFY bannersChanged)
    Q_PROPERTY(QString overflowText READ overflowText NOTIFY bannersChanged)
    Q_PROPERTY(double overflowSize READ overflowSize NOTIFY scaleChanged)
    Q_PROPERTY(QString acknowledgeTitle READ acknowledgeTitle CONSTANT)
    Q_PROPERTY(QString lastAnnouncement READ lastAnnouncement NOTIFY announced)

public:
    static constexpr int shownLimit = 3;

    explicit UrgentBannersModel(QObject* parent = nullptr);

    // Red, for what must not be missed.
    int bannerColorRole() const { return static_cast<int>(Theme::Role::red); }
    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &UrgentBannersModel::crewChanged); }
    double scale() const { return scale_; }
    void setScale(double value);

    // "From ", the sender, " at " and the time, then the cue if there is one.
    static QString detail(const ChatMessage& message);
    static QString announcement(const ChatMessage& message);
    // The newest three of `pending`, in order.
    static QVariantList banners(const std::vector<ChatMessage>& pending);
    // Keeps its plural even for one.
    static QString overflowText(int pending);

    QVariantList banners() const { return banners_; }
    bool showsOverflow() const { return pendingCount_ > shownLimit; }
    QString overflowText() const { return overflowText(pendingCount_); }
    double overflowSize() const { return 13.0 * scale_; }
    QString acknowledgeTitle() const { return QStringLiteral("Got It"); }
    QString lastAnnouncement() const
    {
        return announcements_.isEmpty() ? QString() : announcements_.last();
    }
    // What the last change of the pending set announced, in order.
    const QStringList& lastAnnouncements() const { return announcements_; }

    Q_INVOKABLE void acknowledge(const QString& id);

signals:
    void crewChanged();
    void scaleChanged();
    void bannersChanged();
    void announced(const QString& text);

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<CrewLink> crew_;
    double scale_ = 1.0;
    QVariantList banners_;
    int pendingCount_ = 0;
    QStringList pendingIds_;
    QStringList announcements_;
};

} // namespace ostrel
