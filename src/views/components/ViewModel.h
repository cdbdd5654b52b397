#pragma once

// Base of the view models. Each takes the narrow objects it shows (the meter, a settings group,
// the QLab client) as properties, follows them, drops its connections when one changes or goes,
// and recomputes. Subclasses name it `ostrel::ViewModel`: Qt 6.4's type registrar does not
// resolve an unqualified base class inside a namespace.
#include <vector>

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace ostrel {

class ViewModel : public QObject {
    Q_OBJECT
    QML_ANONYMOUS

public:
    ~ViewModel() override;

protected:
    explicit ViewModel(QObject* parent = nullptr);

    // Sets one of the view model's sources, then follows the new set of sources.
    template <typename Source, typename Self>
    void setSource(QPointer<Source>& slot, Source* value, void (Self::*notify)())
    {
        if (slot == value) return;
        slot = value;
        reattach();
        (static_cast<Self*>(this)->*notify)();
    }

    // Connect to the present sources, each through `watch` and `track`.
    virtual void attach();
    // Recompute every derived property from the present sources, or from none.
    virtual void refresh();
    // Follows `source` going away; null is ignored.
    void watch(QObject* source);
    void track(QMetaObject::Connection connection) { connections_.push_back(connection); }
    void reattach();

private:
    void detach();

    std::vector<QMetaObject::Connection> connections_;
};

} // namespace ostrel
