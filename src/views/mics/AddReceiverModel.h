#pragma once

// The Add Receiver sheet: the kind, the address, a label and, for EW-DX, the 3rd Party Access
// password; "Add" only with an address.
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "mics/MicReceiver.h"
#include "mics/link/MicMonitor.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class AddReceiverModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::MicMonitor* mics READ mics WRITE setMics NOTIFY micsChanged)
    Q_PROPERTY(int kindIndex READ kindIndex WRITE setKindIndex NOTIFY formChanged)
    Q_PROPERTY(QString host READ host WRITE setHost NOTIFY formChanged)
    Q_PROPERTY(QString label READ label WRITE setLabel NOTIFY formChanged)
    Q_PROPERTY(QString password READ password WRITE setPassword NOTIFY formChanged)
    Q_PROPERTY(QStringList kindTitles READ kindTitles CONSTANT)
    Q_PROPERTY(bool showsPassword READ showsPassword NOTIFY formChanged)
    Q_PROPERTY(QString hint READ hint NOTIFY formChanged)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY formChanged)

public:
    explicit AddReceiverModel(QObject* parent = nullptr);

    MicMonitor* mics() const { return mics_.data(); }
    void setMics(MicMonitor* value) { setSource(mics_, value, &AddReceiverModel::micsChanged); }

    int kindIndex() const { return static_cast<int>(kind_); }
    void setKindIndex(int value);
    MicReceiverKind kind() const { return kind_; }
    QString host() const { return host_; }
    void setHost(const QString& value);
    QString label() const { return label_; }
    void setLabel(const QString& value);
    QString password() const { return password_; }
    void setPassword(const QString& value);

    static QStringList kindTitles();
    static QString hint(MicReceiverKind kind);
    bool showsPassword() const { return kind_ == MicReceiverKind::ewdx; }
    QString hint() const { return hint(kind_); }
    bool canAdd() const { return !host_.trimmed().isEmpty(); }

    // Adds the receiver with a fresh id, the trimmed address and label, and a password only for
    // EW-DX; then empties the form. Nothing without an address.
    Q_INVOKABLE bool add();
    Q_INVOKABLE void reset();

signals:
    void micsChanged();
    void formChanged();

private:
    QPointer<MicMonitor> mics_;
    MicReceiverKind kind_ = MicReceiverKind::g4;
    QString host_;
    QString label_;
    QString password_;
};

} // namespace ostrel
