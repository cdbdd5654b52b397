#pragma once

// The mic alert list under the current cue: one row per issue in the roster's order, red for
// dropouts and silent receivers, orange for weak signals and batteries, nothing while all is well.
// A new dropout or silent receiver is announced to screen readers.
#include <QPointer>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include "mics/MicIssue.h"
#include "mics/link/MicMonitor.h"
#include "model/DisplaySettings.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class MicAlertsModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MicMonitor* mics READ mics WRITE setMics NOTIFY micsChanged)
    Q_PROPERTY(ostrel::DisplaySettings* display READ display WRITE setDisplay NOTIFY displayChanged)
    Q_PROPERTY(bool shows READ shows WRITE setShows NOTIFY showsChanged)
    Q_PROPERTY(double scale READ scale WRITE setScale NOTIFY scaleChanged)
    Q_PROPERTY(QVariantList rows READ rows NOTIFY rowsChanged)
    Q_PROPERTY(bool isVisible READ isVisible NOTIFY rowsChanged)
    Q_PROPERTY(double spacing READ spacing NOTIFY scaleChanged)
    Q_PROPERTY(double fontSize READ fontSize NOTIFY scaleChanged)
    Q_PROPERTY(double horizontalPadding READ horizontalPadding NOTIFY scaleChanged)
    Q_PROPERTY(double verticalPadding READ verticalPadding NOTIFY scaleChanged)
    Q_PROPERTY(double backgroundOpacity READ backgroundOpacity CONSTANT)

public:
    explicit MicAlertsModel(QObject* parent = nullptr);

    MicMonitor* mics() const { return mics_.data(); }
    void setMics(MicMonitor* value) { setSource(mics_, value, &MicAlertsModel::micsChanged); }
    DisplaySettings* display() const { return display_.data(); }
    void setDisplay(DisplaySettings* value)
    {
        setSource(display_, value, &MicAlertsModel::displayChanged);
    }
    bool shows() const { return shows_; }
    void setShows(bool value);
    double scale() const { return scale_; }
    void setScale(double value);

    static QString symbol(MicIssueKind kind);
    // The row's words: name, " · ", title (swearing in unhinged mode).
    static QString text(const MicIssue& issue, bool unhinged);
    // Screen readers always get the normal wording.
    static QString accessibleName(const MicIssue& issue);
    // What a new dropout or silent receiver says; nothing for the other kinds.
    static QString announcement(const MicIssue& issue);

    QVariantList rows() const { return rows_; }
    bool isVisible() const { return shows_ && !rows_.isEmpty(); }
    double spacing() const { return 12.0 * scale_; }
    double fontSize() const { return 17.0 * scale_; }
    double horizontalPadding() const { return 14.0 * scale_; }
    double verticalPadding() const { return 6.0 * scale_; }
    double backgroundOpacity() const { return 0.14; }
    // What the last change of the list announced, in order; for tests and a newer Qt's API.
    const QStringList& lastAnnouncements() const { return lastAnnouncements_; }

signals:
    void micsChanged();
    void displayChanged();
    void showsChanged();
    void scaleChanged();
    void rowsChanged();
    void announced(const QString& text);

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<MicMonitor> mics_;
    QPointer<DisplaySettings> display_;
    bool shows_ = true;
    double scale_ = 1.0;
    QVariantList rows_;
    QStringList shownIds_;
    QStringList lastAnnouncements_;
};

} // namespace ostrel
