#pragma once

// What stands beside the current cue: the timecode while a Timecode cue runs, else the Dante
// widget when Dante panels are on and a device is known, else nothing. The Dante status line in
// the top left corner shows while the timecode holds the place.
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "dante/monitor/DanteMonitor.h"
#include "qlab/client/QLabClient.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class SideColumnModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::QLabClient* qlab READ qlab WRITE setQlab NOTIFY qlabChanged)
    Q_PROPERTY(ostrel::DanteMonitor* dante READ dante WRITE setDante NOTIFY danteChanged)
    Q_PROPERTY(bool showsDante READ showsDante WRITE setShowsDante NOTIFY showsDanteChanged)
    Q_PROPERTY(Column column READ column NOTIFY columnChanged)
    Q_PROPERTY(bool showsDanteWidget READ showsDanteWidget NOTIFY columnChanged)
    Q_PROPERTY(bool showsDanteStatus READ showsDanteStatus NOTIFY columnChanged)

public:
    enum class Column { none, timecode, dante };
    Q_ENUM(Column)

    explicit SideColumnModel(QObject* parent = nullptr);

    QLabClient* qlab() const { return qlab_.data(); }
    void setQlab(QLabClient* value) { setSource(qlab_, value, &SideColumnModel::qlabChanged); }
    DanteMonitor* dante() const { return dante_.data(); }
    void setDante(DanteMonitor* value) { setSource(dante_, value, &SideColumnModel::danteChanged); }
    bool showsDante() const { return showsDante_; }
    void setShowsDante(bool value);

    Column column() const { return column_; }
    bool showsDanteWidget() const { return column_ == Column::dante; }
    bool showsDanteStatus() const { return column_ == Column::timecode; }

    static Column columnFor(bool showsTimecode, bool showsDante, bool hasDanteDevice);

signals:
    void qlabChanged();
    void danteChanged();
    void showsDanteChanged();
    void columnChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<QLabClient> qlab_;
    QPointer<DanteMonitor> dante_;
    bool showsDante_ = false;
    Column column_ = Column::none;
};

} // namespace ostrel
