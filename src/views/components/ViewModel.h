#pragma once

// Base of the view models that read the central model. A view hands one in as `appModel`; the
// view model follows it, drops its connections when it changes or goes, and recomputes.
// Subclasses name it `ostrel::ViewModel`: Qt 6.4's type registrar does not resolve an unqualified
// base class inside a namespace, and QML would then not see `appModel`.
#include <vector>

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "model/AppModel.h"

namespace ostrel {

class ViewModel : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)

public:
    ~ViewModel() override;

    AppModel* appModel() const { return model_.data(); }
    void setAppModel(AppModel* model);

signals:
    void appModelChanged();

protected:
    explicit ViewModel(QObject* parent = nullptr);

    // Connect to the parts of `model` that the view model reads, each through `track`.
    virtual void attach(AppModel& model);
    // Recompute every derived property from the present model, or from none.
    virtual void refresh();
    void track(QMetaObject::Connection connection) { connections_.push_back(connection); }

private:
    void detach();

    QPointer<AppModel> model_;
    std::vector<QMetaObject::Connection> connections_;
};

} // namespace ostrel
