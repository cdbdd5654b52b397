#pragma once

// The station's colours by role, in a light and a dark form. View models name a role; only this
// table knows what it looks like, so a dark room and a bright office read the same roles.
#include <QColor>
#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace ostrel {

class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark WRITE setDark NOTIFY darkChanged)
    Q_PROPERTY(QColor background READ background NOTIFY darkChanged)
    Q_PROPERTY(QColor surface READ surface NOTIFY darkChanged)
    Q_PROPERTY(QColor primary READ primary NOTIFY darkChanged)
    Q_PROPERTY(QColor secondary READ secondary NOTIFY darkChanged)
    Q_PROPERTY(QColor tertiary READ tertiary NOTIFY darkChanged)
    Q_PROPERTY(QColor quaternary READ quaternary NOTIFY darkChanged)
    Q_PROPERTY(QColor accent READ accent NOTIFY darkChanged)
    // Indexed by Role: a view binds `Theme.colors[model.colorRole]` and follows the appearance.
    Q_PROPERTY(QList<QColor> colors READ colors NOTIFY darkChanged)

public:
    enum class Role {
        primary,
        secondary,
        tertiary,
        quaternary,
        accent,
        orange,
        red,
        green,
        yellow
    };
    Q_ENUM(Role)

    explicit Theme(QObject* parent = nullptr);

    static QColor color(Role role, bool dark);
    // Unknown roles read as primary.
    QColor color(int role) const;
    QList<QColor> colors() const;

    bool dark() const { return dark_; }
    void setDark(bool value);
    QColor background() const;
    QColor surface() const;
    QColor primary() const { return color(Role::primary, dark_); }
    QColor secondary() const { return color(Role::secondary, dark_); }
    QColor tertiary() const { return color(Role::tertiary, dark_); }
    QColor quaternary() const { return color(Role::quaternary, dark_); }
    QColor accent() const { return color(Role::accent, dark_); }

signals:
    void darkChanged();

private:
    bool dark_ = false;
};

} // namespace ostrel
