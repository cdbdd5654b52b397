#pragma once

// The one table from the symbol names the views use to icons of the Material Icons font (by
// ligature name). Without the font each symbol falls back to plain text, so a bare system still
// shows every control.
#include <span>

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace ostrel {

class Symbols : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString fontFamily READ fontFamily CONSTANT)
    Q_PROPERTY(bool hasFont READ hasFont CONSTANT)

public:
    // From the Debian package fonts-material-design-icons-iconfont.
    static constexpr const char* systemFontPath
        = "/usr/share/fonts/truetype/material-design-icons-iconfont/MaterialIcons-Regular.ttf";
    static constexpr const char* family = "Material Icons";

    struct Entry {
        const char* name;
        const char* icon;
        const char* fallback;
    };
    static std::span<const Entry> table();

    // Once per process, before the first view; needs a running QGuiApplication.
    static bool installFont(const QString& path = QString::fromLatin1(systemFontPath));
    static bool isFontInstalled();

    // The icon's ligature name with the font, its stand-in without; empty for an unknown name.
    static QString text(const QString& name, bool withFont);

    explicit Symbols(QObject* parent = nullptr);

    Q_INVOKABLE QString text(const QString& name) const { return text(name, hasFont_); }
    QString fontFamily() const;
    bool hasFont() const { return hasFont_; }

private:
    bool hasFont_;
};

} // namespace ostrel
