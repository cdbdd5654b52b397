#pragma once

// The sheet that starts a show: what will be recorded, a name, and how long the free disk lasts.
#include <optional>

#include <QString>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class NewSessionModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    Q_PROPERTY(bool showsEstimate READ showsEstimate NOTIFY changed)
    Q_PROPERTY(QString estimateText READ estimateText NOTIFY changed)
    Q_PROPERTY(QString estimateSymbol READ estimateSymbol NOTIFY changed)
    Q_PROPERTY(int estimateColorRole READ estimateColorRole NOTIFY changed)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString namePrompt READ namePrompt CONSTANT)
    Q_PROPERTY(double width READ width CONSTANT)

public:
    struct Estimate {
        QString text;
        QString symbol;
        int colorRole = 0;
        bool operator==(const Estimate&) const = default;
    };

    explicit NewSessionModel(QObject* parent = nullptr);

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value)
    {
        setSource(appModel_, value, &NewSessionModel::appModelChanged);
    }

    static QString explanation(bool recordsAudio);
    // Nothing without a recording or without a known free space.
    static std::optional<Estimate> estimate(bool recordsAudio, std::optional<qint64> freeBytes);
    // Whole hours, or below an hour whole minutes: "5 hours", "1 hour", "45 minutes".
    static QString hours(double value);

    QString explanation() const { return explanation_; }
    bool showsEstimate() const { return estimate_.has_value(); }
    QString estimateText() const { return estimate_ ? estimate_->text : QString(); }
    QString estimateSymbol() const { return estimate_ ? estimate_->symbol : QString(); }
    int estimateColorRole() const { return estimate_ ? estimate_->colorRole : 0; }
    QString title() const { return QStringLiteral("New Session"); }
    QString namePrompt() const { return QStringLiteral("Friday Night Performance"); }
    double width() const { return 400.0; }

    // Starts the show under `name` and closes the sheet.
    Q_INVOKABLE void start(const QString& name);
    Q_INVOKABLE void cancel();

signals:
    void appModelChanged();
    void changed();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AppModel> appModel_;
    QString explanation_;
    std::optional<Estimate> estimate_;
};

} // namespace ostrel
