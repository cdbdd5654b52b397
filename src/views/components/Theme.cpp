#include "views/components/Theme.h"

namespace ostrel {

Theme::Theme(QObject* parent) : QObject(parent) { }

QColor Theme::color(Role role, bool dark)
{
    // The label colours are translucent so that they sit on any background of the appearance.
    switch (role) {
    case Role::primary:
        return dark ? QColor(255, 255, 255, 235) : QColor(0, 0, 0, 217);
    case Role::secondary:
        return dark ? QColor(235, 235, 245, 153) : QColor(60, 60, 67, 153);
    case Role::tertiary:
        return dark ? QColor(235, 235, 245, 77) : QColor(60, 60, 67, 77);
    case Role::quaternary:
        return dark ? QColor(235, 235, 245, 46) : QColor(60, 60, 67, 46);
    case Role::accent:
        return dark ? QColor(10, 132, 255) : QColor(0, 122, 255);
    case Role::orange:
        return dark ? QColor(255, 159, 10) : QColor(255, 149, 0);
    case Role::red:
        return dark ? QColor(255, 69, 58) : QColor(255, 59, 48);
    case Role::green:
        return dark ? QColor(48, 209, 88) : QColor(40, 205, 65);
    case Role::yellow:
        return dark ? QColor(255, 214, 10) : QColor(255, 204, 0);
    }
    return dark ? QColor(Qt::white) : QColor(Qt::black);
}

QColor Theme::color(int role) const
{
    if (role < static_cast<int>(Role::primary) || role > static_cast<int>(Role::yellow))
        return primary();
    return color(static_cast<Role>(role), dark_);
}

QList<QColor> Theme::colors() const
{
    QList<QColor> list;
    for (int role = static_cast<int>(Role::primary); role <= static_cast<int>(Role::yellow); ++role)
        list.append(color(static_cast<Role>(role), dark_));
    return list;
}

void Theme::setDark(bool value)
{
    if (value == dark_) return;
    dark_ = value;
    emit darkChanged();
}

QColor Theme::background() const
{
    // Black in the dark: the window must not glow in a blacked-out auditorium.
    return dark_ ? QColor(0, 0, 0) : QColor(246, 246, 246);
}

QColor Theme::surface() const
{
    return dark_ ? QColor(44, 44, 46) : QColor(255, 255, 255);
}

} // namespace ostrel
