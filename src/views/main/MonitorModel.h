#pragma once

// What the main screen shows where, beyond the scale: the readout or the audio notice, the
// no-signal line, the graph row, and the captions of the screen's own sections.
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "views/components/ViewModel.h"

namespace ostrel {

class MonitorModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool showsReadout READ showsReadout NOTIFY showsReadoutChanged)
    Q_PROPERTY(bool showsNoSignalText READ showsNoSignalText NOTIFY showsNoSignalTextChanged)
    Q_PROPERTY(bool showsGraph READ showsGraph NOTIFY showsGraphChanged)
    Q_PROPERTY(QString noSignalText READ noSignalText CONSTANT)
    Q_PROPERTY(QString currentCueCaption READ currentCueCaption CONSTANT)
    Q_PROPERTY(QString levelCaption READ levelCaption CONSTANT)
    Q_PROPERTY(QString spectrumCaption READ spectrumCaption CONSTANT)

public:
    explicit MonitorModel(QObject* parent = nullptr);

    // The audio notice takes the readout's place.
    bool showsReadout() const { return showsReadout_; }
    bool showsNoSignalText() const { return showsNoSignalText_; }
    bool showsGraph() const { return showsGraph_; }
    QString noSignalText() const { return QStringLiteral("No audio signal detected."); }
    QString currentCueCaption() const { return QStringLiteral("CURRENT CUE"); }
    QString levelCaption() const { return QStringLiteral("LEVEL"); }
    QString spectrumCaption() const { return QStringLiteral("SPECTRUM"); }

signals:
    void showsReadoutChanged();
    void showsNoSignalTextChanged();
    void showsGraphChanged();

protected:
    void attach(AppModel& model) override;
    void refresh() override;

private:
    bool showsReadout_ = true;
    bool showsNoSignalText_ = false;
    bool showsGraph_ = true;
};

} // namespace ostrel
