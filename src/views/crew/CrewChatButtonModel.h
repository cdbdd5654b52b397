#pragma once

// The toolbar's "Crew Chat" button of a station in a crew, with a red badge counting unread
// messages.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "crew/CrewLink.h"
#include "views/components/Theme.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class CrewChatButtonModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int badgeColorRole READ badgeColorRole CONSTANT)
    Q_PROPERTY(ostrel::CrewLink* crew READ crew WRITE setCrew NOTIFY crewChanged)
    Q_PROPERTY(bool isVisible READ isVisible NOTIFY isVisibleChanged)
    Q_PROPERTY(bool showsBadge READ showsBadge NOTIFY unreadChanged)
    Q_PROPERTY(QString badgeText READ badgeText NOTIFY unreadChanged)
    Q_PROPERTY(QString accessibleValue READ accessibleValue NOTIFY unreadChanged)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QString help READ help CONSTANT)
    Q_PROPERTY(QString shortcut READ shortcut CONSTANT)

public:
    explicit CrewChatButtonModel(QObject* parent = nullptr);

    // Red, for what must not be missed.
    int badgeColorRole() const { return static_cast<int>(Theme::Role::red); }
    CrewLink* crew() const { return crew_.data(); }
    void setCrew(CrewLink* value) { setSource(crew_, value, &CrewChatButtonModel::crewChanged); }

    // The count, or "99+" from 100 on.
    static QString badgeText(int unread);

    bool isVisible() const { return isVisible_; }
    bool showsBadge() const { return unread_ > 0; }
    QString badgeText() const { return badgeText(unread_); }
    QString accessibleValue() const;
    QString title() const { return QStringLiteral("Crew Chat"); }
    QString symbol() const { return QStringLiteral("bubble.left.and.bubble.right"); }
    QString help() const { return QStringLiteral("Crew chat (Ctrl+Shift+T)"); }
    QString shortcut() const { return QStringLiteral("Ctrl+Shift+T"); }

signals:
    void crewChanged();
    void isVisibleChanged();
    void unreadChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<CrewLink> crew_;
    bool isVisible_ = false;
    int unread_ = 0;
};

} // namespace ostrel
