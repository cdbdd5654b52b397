#pragma once

// The small status line in the top right corner: a dot in the link's colour and "QLab" with the
// state in words; the workspace, when known, as its help text.
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "qlab/QLabClientState.h"
#include "qlab/client/QLabClient.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class QLabStatusModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::QLabClient* qlab READ qlab WRITE setQlab NOTIFY qlabChanged)
    Q_PROPERTY(QString text READ text NOTIFY statusChanged)
    Q_PROPERTY(int dotColorRole READ dotColorRole NOTIFY statusChanged)
    Q_PROPERTY(double dotOpacity READ dotOpacity NOTIFY statusChanged)
    Q_PROPERTY(QString helpText READ helpText NOTIFY statusChanged)
    Q_PROPERTY(bool hasHelp READ hasHelp NOTIFY statusChanged)
    Q_PROPERTY(double spacing READ spacing CONSTANT)

public:
    QLabClient* qlab() const { return qlab_.data(); }
    void setQlab(QLabClient* value) { setSource(qlab_, value, &QLabStatusModel::qlabChanged); }

    struct Look {
        int colorRole = 0;
        double opacity = 1.0;
        bool operator==(const Look&) const = default;
    };

    explicit QLabStatusModel(QObject* parent = nullptr);

    static QString text(QLabClientState state);
    static Look look(QLabClientState state);
    static QString helpText(const std::optional<QString>& workspaceName);

    QString text() const { return text_; }
    int dotColorRole() const { return look_.colorRole; }
    double dotOpacity() const { return look_.opacity; }
    QString helpText() const { return helpText_; }
    bool hasHelp() const { return !helpText_.isEmpty(); }
    double spacing() const { return 6.0; }

signals:
    void qlabChanged();
    void statusChanged();

protected:
    void attach() override;
    void refresh() override;

private:
    QPointer<QLabClient> qlab_;
    QString text_;
    Look look_;
    QString helpText_;
};

} // namespace ostrel
