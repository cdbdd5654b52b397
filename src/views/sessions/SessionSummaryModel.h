#pragma once

// The summary of a show that has just ended: its name and meter setting, the recording's
// warning if part of it was lost, four figures, and the ways on: export, replay, done.
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class SessionSummaryModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString measuredWith READ measuredWith NOTIFY changed)
    Q_PROPERTY(bool hasWarning READ hasWarning NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(int warningColorRole READ warningColorRole CONSTANT)
    Q_PROPERTY(QString durationText READ durationText NOTIFY changed)
    Q_PROPERTY(QString cuesText READ cuesText NOTIFY changed)
    Q_PROPERTY(QString maximumText READ maximumText NOTIFY changed)
    Q_PROPERTY(QString averageText READ averageText NOTIFY changed)
    Q_PROPERTY(bool showsReplay READ showsReplay NOTIFY changed)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(double width READ width CONSTANT)

public:
    struct Figures {
        QString duration;
        QString cues;
        QString maximum;
        QString average;
        bool operator==(const Figures&) const = default;
    };

    explicit SessionSummaryModel(QObject* parent = nullptr);

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value)
    {
        setSource(appModel_, value, &SessionSummaryModel::appModelChanged);
    }

    static Figures figures(const ShowSession& session, Date now);
    static QString measuredWith(const QString& meterSetting);

    bool isPresented() const { return session_.has_value(); }
    QString name() const { return session_ ? session_->name : QString(); }
    QString measuredWith() const
    {
        return session_ ? measuredWith(session_->meterSetting) : QString();
    }
    bool hasWarning() const { return !warning_.isEmpty(); }
    QString warning() const { return warning_; }
    int warningColorRole() const;
    QString durationText() const { return figures_.duration; }
    QString cuesText() const { return figures_.cues; }
    QString maximumText() const { return figures_.maximum; }
    QString averageText() const { return figures_.average; }
    // Only a show with a recording can be replayed.
    bool showsReplay() const { return session_ && session_->recordingFolderName.has_value(); }
    QString title() const { return QStringLiteral("Session Summary"); }
    double width() const { return 420.0; }

    Q_INVOKABLE void done();
    // Selects this show's recording for the Recordings window, which the view then opens.
    Q_INVOKABLE void selectForReplay();

signals:
    void appModelChanged();
    void changed();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<AppModel> appModel_;
    std::optional<ShowSession> session_;
    QString warning_;
    Figures figures_;
};

} // namespace ostrel
