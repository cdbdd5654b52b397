#pragma once

// The Dante panel beside the current cue: how many devices are online, in orange with what is
// offline when something is, and the first eight devices with a dot each, offline first.
#include <QPointer>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "dante/monitor/DanteMonitor.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class DanteWidgetModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::DanteMonitor* dante READ dante WRITE setDante NOTIFY danteChanged)
    Q_PROPERTY(double scale READ scale WRITE setScale NOTIFY scaleChanged)
    Q_PROPERTY(QString heading READ heading CONSTANT)
    Q_PROPERTY(QString helpText READ helpText CONSTANT)
    Q_PROPERTY(bool hasOffline READ hasOffline NOTIFY contentChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY contentChanged)
    Q_PROPERTY(QString detailText READ detailText NOTIFY contentChanged)
    Q_PROPERTY(QString accessibleName READ accessibleName NOTIFY contentChanged)
    Q_PROPERTY(QVariantList listed READ listed NOTIFY contentChanged)
    Q_PROPERTY(QString moreText READ moreText NOTIFY contentChanged)
    Q_PROPERTY(int countColorRole READ countColorRole NOTIFY contentChanged)
    Q_PROPERTY(bool showsMore READ showsMore NOTIFY contentChanged)
    Q_PROPERTY(double headingSize READ headingSize NOTIFY scaleChanged)
    Q_PROPERTY(double headingTracking READ headingTracking NOTIFY scaleChanged)
    Q_PROPERTY(double headingPadding READ headingPadding NOTIFY scaleChanged)
    Q_PROPERTY(double countSize READ countSize NOTIFY layoutChanged)
    Q_PROPERTY(double detailSize READ detailSize NOTIFY scaleChanged)
    Q_PROPERTY(double nameSize READ nameSize NOTIFY scaleChanged)
    Q_PROPERTY(double moreSize READ moreSize NOTIFY scaleChanged)
    Q_PROPERTY(double gridItemWidth READ gridItemWidth NOTIFY scaleChanged)
    Q_PROPERTY(double gridSpacing READ gridSpacing NOTIFY scaleChanged)
    Q_PROPERTY(double gridWidth READ gridWidth NOTIFY layoutChanged)
    Q_PROPERTY(double maximumWidth READ maximumWidth NOTIFY scaleChanged)
    Q_PROPERTY(double padding READ padding NOTIFY scaleChanged)

public:
    static constexpr int maximumListed = 8;

    explicit DanteWidgetModel(QObject* parent = nullptr);

    DanteMonitor* dante() const { return dante_.data(); }
    void setDante(DanteMonitor* value)
    {
        setSource(dante_, value, &DanteWidgetModel::danteChanged);
    }
    double scale() const { return scale_; }
    void setScale(double value);

    QString heading() const { return QStringLiteral("DANTE"); }
    QString helpText() const { return QStringLiteral("Show Dante devices"); }
    bool hasOffline() const { return hasOffline_; }
    QString countText() const { return countText_; }
    QString detailText() const { return detailText_; }
    QString accessibleName() const { return accessibleName_; }
    int countColorRole() const;
    // Each a map with "name", "isOnline" and the dot's "colorRole".
    QVariantList listed() const { return listed_; }
    QString moreText() const { return moreText_; }
    bool showsMore() const { return !moreText_.isEmpty(); }

    double headingSize() const { return 12.0 * scale_; }
    double headingTracking() const { return 1.6 * scale_; }
    double headingPadding() const { return 4.0 * scale_; }
    double countSize() const { return (hasOffline_ ? 34.0 : 56.0) * scale_; }
    double detailSize() const { return 17.0 * scale_; }
    double nameSize() const { return 14.0 * scale_; }
    double moreSize() const { return 13.0 * scale_; }
    double gridItemWidth() const { return 150.0 * scale_; }
    double gridSpacing() const { return 6.0 * scale_; }
    // Up to four names a column, in as many columns as the widest grid holds.
    int gridColumns() const;
    double gridWidth() const;
    double maximumWidth() const { return 520.0 * scale_; }
    double padding() const { return 10.0 * scale_; }

signals:
    void danteChanged();
    void scaleChanged();
    void contentChanged();
    void layoutChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<DanteMonitor> dante_;
    double scale_ = 1.0;
    bool hasOffline_ = false;
    QString countText_;
    QString detailText_;
    QString accessibleName_;
    QVariantList listed_;
    QString moreText_;
};

} // namespace ostrel
