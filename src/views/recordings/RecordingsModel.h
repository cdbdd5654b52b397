#pragma once

// The list side of the Recordings window: the recorded shows, newest first, the one selected,
// whether it can be replayed, and moving one to the bin.
#include <QAbstractListModel>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "station/AppModel.h"

namespace ostrel {

class RecordingsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel* appModel READ appModel WRITE setAppModel NOTIFY appModelChanged)
    Q_PROPERTY(bool showsEmptyList READ showsEmptyList NOTIFY listChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged)
    Q_PROPERTY(Detail detail READ detail NOTIFY selectionChanged)
    Q_PROPERTY(QString selectedFolder READ selectedFolder NOTIFY selectionChanged)
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)
    Q_PROPERTY(bool showsNoSelection READ showsNoSelection NOTIFY selectionChanged)
    Q_PROPERTY(bool showsInProgress READ showsInProgress NOTIFY selectionChanged)
    Q_PROPERTY(bool showsReplay READ showsReplay NOTIFY selectionChanged)
    Q_PROPERTY(int recordingColorRole READ recordingColorRole CONSTANT)

public:
    enum Role { nameRole = Qt::UserRole + 1, dateRole, captionRole, isRecordingRole };
    Q_ENUM(Role)
    enum class Detail { none, inProgress, replay };
    Q_ENUM(Detail)

    explicit RecordingsModel(QObject* parent = nullptr);

    AppModel* appModel() const { return appModel_.data(); }
    void setAppModel(AppModel* value);

    bool showsEmptyList() const;
    int selectedRow() const;
    Detail detail() const;
    QString selectedFolder() const;
    QString problem() const { return problem_; }
    bool showsNoSelection() const { return detail() == Detail::none; }
    bool showsInProgress() const { return detail() == Detail::inProgress; }
    bool showsReplay() const { return detail() == Detail::replay; }
    int recordingColorRole() const;

    // The date and time of a start: abbreviated weekday, day, month, hour and minute.
    static QString dateText(Date start, const QLocale& locale = QLocale());
    // "Recording" while the show runs; else its length, its size and "No audio" without sound.
    static QString caption(const Recording& recording, bool isRecording);
    // "This frees … You can restore it from the Bin until you empty it."
    Q_INVOKABLE QString deletionMessage(int row) const;

    Q_INVOKABLE void refresh();
    Q_INVOKABLE void select(int row);
    Q_INVOKABLE void moveToBin(int row);
    Q_INVOKABLE void showInFileManager(int row) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void appModelChanged();
    void listChanged();
    void selectionChanged();
    void problemChanged();

private:
    bool isInProgress(const Recording& recording) const;
    const Recording* at(int row) const;
    void reload();

    QPointer<AppModel> appModel_;
    std::vector<QMetaObject::Connection> connections_;
    std::vector<Recording> recordings_;
    QString problem_;
};

} // namespace ostrel
