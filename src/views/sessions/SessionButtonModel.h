#pragma once

// The toolbar's session button: "Start Session" while no show runs; during a show a red dot and
// the show's running time, which ends it.
#include <functional>

#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class SessionButtonModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY elapsedTextChanged)
    Q_PROPERTY(QString helpText READ helpText NOTIFY changed)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY changed)
    Q_PROPERTY(QString startTitle READ startTitle CONSTANT)
    Q_PROPERTY(QString startSymbol READ startSymbol CONSTANT)
    Q_PROPERTY(int dotColorRole READ dotColorRole CONSTANT)

public:
    using Clock = std::function<Date()>;

    explicit SessionButtonModel(QObject* parent = nullptr);

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value)
    {
        setSource(appModel_, value, &SessionButtonModel::appModelChanged);
    }
    // For tests: the clock the running time is read from.
    void setClock(Clock clock);

    // "0:00:42", "1:02:03": hours, minutes and seconds.
    static QString elapsed(double seconds);

    bool isRunning() const { return session_.has_value(); }
    QString elapsedText() const { return elapsedText_; }
    QString helpText() const;
    QString accessibleName() const;
    QString startTitle() const { return QStringLiteral("Start Session"); }
    QString startSymbol() const { return QStringLiteral("record.circle"); }
    int dotColorRole() const;

    Q_INVOKABLE void trigger();

signals:
    void appModelChanged();
    void changed();
    void elapsedTextChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    void tick();

    QPointer<AppModel> appModel_;
    Clock clock_;
    QTimer ticker_;
    std::optional<ShowSession> session_; // the show that runs, if one does
    QString elapsedText_;
};

} // namespace ostrel
