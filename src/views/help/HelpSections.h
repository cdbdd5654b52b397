#pragma once

// The help window's sections, in order: a title and its text each.
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace ostrel {

class HelpSections : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QVariantList sections READ sections CONSTANT)

public:
    struct Section {
        const char* title;
        const char* text;
    };
    static const std::vector<Section>& all();

    // Each a map with "title" and "text".
    QVariantList sections() const;
};

} // namespace ostrel
