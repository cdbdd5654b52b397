#pragma once

// What stands in place of the level readout while the live input can't measure: a sentence and
// the one action that can help. Demo and inert stations never show it.
#include <functional>
#include <optional>

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "audio/AudioInput.h"
#include "station/AppModel.h"
#include "station/LiveInput.h"
#include "views/components/ViewModel.h"

namespace ostrel {

class AudioNoticeModel : public ostrel::ViewModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ostrel::AppModel::Mode mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(ostrel::LiveInput* input READ input WRITE setInput NOTIFY inputChanged)
    Q_PROPERTY(bool hasNotice READ hasNotice NOTIFY noticeChanged)
    Q_PROPERTY(QString message READ message NOTIFY noticeChanged)
    Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY noticeChanged)
    Q_PROPERTY(Action action READ action NOTIFY noticeChanged)
    Q_PROPERTY(bool showsAction READ showsAction NOTIFY noticeChanged)
    Q_PROPERTY(bool actionIsLink READ actionIsLink NOTIFY noticeChanged)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)

public:
    // Demo and inert stations never show the audio notice.
    AppModel::Mode mode() const { return mode_; }
    void setMode(AppModel::Mode value);
    LiveInput* input() const { return input_.data(); }
    void setInput(LiveInput* value) { setSource(input_, value, &AudioNoticeModel::inputChanged); }

    enum class Action { none, openSoundSettings, chooseInput, retry };
    Q_ENUM(Action)

    struct Notice {
        QString message;
        QString actionTitle;
        Action action = Action::none;
        bool operator==(const Notice&) const = default;
    };

    // A program and its arguments.
    struct Command {
        QString program;
        QStringList arguments;
        bool operator==(const Command&) const = default;
    };
    // Looks a program up by name; empty when it isn't installed.
    using ProgramFinder = std::function<QString(const QString&)>;

    explicit AudioNoticeModel(QObject* parent = nullptr);

    static std::optional<Notice> notice(AppModel::Mode mode, AudioInput::Status status);
    // The desktop's sound settings, from the first tool found, or none.
    static std::optional<Command> soundSettingsCommand(const ProgramFinder& find);

    void setProgramFinder(ProgramFinder find);
    void setCommandLauncher(std::function<bool(const Command&)> launch);

    bool hasNotice() const { return notice_.has_value(); }
    QString message() const { return notice_ ? notice_->message : QString(); }
    QString actionTitle() const { return notice_ ? notice_->actionTitle : QString(); }
    Action action() const { return notice_ ? notice_->action : Action::none; }
    // Without a sound settings tool on this computer, its button would do nothing.
    bool showsAction() const;
    bool actionIsLink() const { return action() == Action::chooseInput; }
    QString symbol() const { return QStringLiteral("mic.slash"); }

    Q_INVOKABLE void perform();

signals:
    void modeChanged();
    void inputChanged();
    void noticeChanged();
    // "Choose Input" was pressed: the window shows the input picker.
    void inputPickerRequested();

protected:
    void attach() override;
    void refresh() override;

private:
    AppModel::Mode mode_ = AppModel::Mode::live;
    QPointer<LiveInput> input_;
    std::optional<Notice> notice_;
    ProgramFinder find_;
    std::function<bool(const Command&)> launch_;
};

} // namespace ostrel
