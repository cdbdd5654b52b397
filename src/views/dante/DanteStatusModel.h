#pragma once

// The small Dante line in the top left corner: in orange what is offline, otherwise a green dot
// and how many devices are seen; why no device can be seen when the daemon is missing. Quiet
// while there is nothing to say. It tells screen readers of each device that goes offline.
#include <set>

#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "dante/monitor/DanteMonitor.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class DanteStatusModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DanteMonitor* dante READ dante WRITE setDante NOTIFY danteChanged)
    Q_PROPERTY(bool showsDante READ showsDante WRITE setShowsDante NOTIFY inputsChanged)
    Q_PROPERTY(bool isVisible READ isVisible WRITE setVisible NOTIFY inputsChanged)
    Q_PROPERTY(bool shows READ shows NOTIFY statusChanged)
    Q_PROPERTY(bool isWarning READ isWarning NOTIFY statusChanged)
    Q_PROPERTY(bool showsDot READ showsDot NOTIFY statusChanged)
    Q_PROPERTY(QString text READ text NOTIFY statusChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY statusChanged)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(int textColorRole READ textColorRole NOTIFY statusChanged)
    Q_PROPERTY(int warningColorRole READ warningColorRole CONSTANT)
    Q_PROPERTY(int dotColorRole READ dotColorRole CONSTANT)
    Q_PROPERTY(QString lastAnnouncement READ lastAnnouncement NOTIFY announced)
    Q_PROPERTY(double spacing READ spacing CONSTANT)
    Q_PROPERTY(double fontSize READ fontSize CONSTANT)
    Q_PROPERTY(double dotSize READ dotSize CONSTANT)
    Q_PROPERTY(int animationMilliseconds READ animationMilliseconds NOTIFY reducedMotionChanged)
    Q_PROPERTY(
        bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY reducedMotionChanged)

public:
    explicit DanteStatusModel(QObject* parent = nullptr);

    DanteMonitor* dante() const { return dante_.data(); }
    void setDante(DanteMonitor* value)
    {
        setSource(dante_, value, &DanteStatusModel::danteChanged);
    }
    bool showsDante() const { return showsDante_; }
    void setShowsDante(bool value);
    // The main screen passes false while the Dante widget has its place in the row.
    bool isVisible() const { return isVisible_; }
    void setVisible(bool value);
    bool reducedMotion() const { return reducedMotion_; }
    void setReducedMotion(bool value);

    bool shows() const { return shows_; }
    bool isWarning() const { return isWarning_; }
    bool showsDot() const { return shows_ && !isWarning_; }
    QString text() const { return text_; }
    QString accessibleName() const { return accessibleName_; }
    QString symbol() const { return QStringLiteral("exclamationmark.triangle.fill"); }
    QString lastAnnouncement() const { return lastAnnouncement_; }
    int textColorRole() const;
    int warningColorRole() const;
    int dotColorRole() const;
    double spacing() const { return 6.0; }
    // The subheadline size.
    double fontSize() const { return 13.0; }
    double dotSize() const { return 7.0; }
    int animationMilliseconds() const { return reducedMotion_ ? 200 : 500; }

    // "Stage-Box-2 offline" for one, "3 Dante devices offline" for more.
    static QString offlineText(const std::vector<DanteDevice>& offline);
    // "1 device", "6 devices".
    static QString onlineText(qsizetype online);
    static QString announcementText(const QString& name);

signals:
    void danteChanged();
    void inputsChanged();
    void statusChanged();
    void reducedMotionChanged();
    // For a screen reader, once for each device that goes offline.
    void announced(const QString& text);

protected:
    void attach() override;
    void refresh() override;

private:
    void announceNewlyOffline(const std::vector<DanteDevice>& offline);

    QPointer<DanteMonitor> dante_;
    bool showsDante_ = false;
    bool isVisible_ = false;
    bool reducedMotion_ = false;
    bool shows_ = false;
    bool isWarning_ = false;
    QString text_;
    QString accessibleName_;
    QString lastAnnouncement_;
    std::set<QString> offline_;
};

} // namespace ostrel
