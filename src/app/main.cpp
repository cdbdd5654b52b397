// Ostrel Live: one AppModel for the process's life and its main window.
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickStyle>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>
#include <chrono>
#include <cstdio>
#include <memory>

#include "app/SampleContent.h"
#include "app/SilentCaptureBackend.h"
#include "app/StationShell.h"
#include "app/UnixSignals.h"
#include "audio/QtAudioCaptureBackend.h"
#include "station/AppModel.h"
#include "views/components/Symbols.h"

Q_IMPORT_QML_PLUGIN(Ostrel_ComponentsPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_LevelPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_QLabPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_SpectrumPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_CalibrationPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_SessionsPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_RecordingsPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_DantePlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_HelpPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_MicsPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_CrewPlugin)
Q_IMPORT_QML_PLUGIN(Ostrel_MainPlugin)

using namespace ostrel;

namespace {

std::optional<QSize> parseSize(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("^(\\d{2,5})x(\\d{2,5})$"));
    const auto match = pattern.match(text);
    if (!match.hasMatch()) return std::nullopt;
    return QSize(match.captured(1).toInt(), match.captured(2).toInt());
}

} // namespace

int main(int argc, char* argv[])
{
    QElapsedTimer launch;
    launch.start();

    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Ostrel"));
    QGuiApplication::setApplicationName(QStringLiteral("Ostrel Live"));
    QGuiApplication::setApplicationVersion(QStringLiteral(OSTREL_VERSION));
    QQuickStyle::setStyle(QStringLiteral("Fusion"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Sound level meter and show monitor for a theatre's sound department."));
    // "-demo" is one word, as the model reads it.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption demo(
        QStringLiteral("demo"), QStringLiteral("Run on simulated readings (-demo)."));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
        QStringLiteral("Render the main window with sample readings into FILE (PNG) and quit. "
                       "Touches neither the audio input nor the saved preferences."),
        QStringLiteral("FILE"));
    const QCommandLineOption size(QStringLiteral("size"),
        QStringLiteral("Window size for --screenshot (default 560x720)."), QStringLiteral("WxH"),
        QStringLiteral("560x720"));
    const QCommandLineOption appearance(QStringLiteral("appearance"),
        QStringLiteral("Appearance for --screenshot: system, light or dark (default system)."),
        QStringLiteral("MODE"), QStringLiteral("system"));
    parser.addOptions({demo, screenshot, size, appearance});
    parser.process(application);

    // The model takes the exact word only; accepting "--demo" here would quietly run live.
    if (parser.isSet(demo) && !QCoreApplication::arguments().contains(QStringLiteral("-demo"))) {
        std::fprintf(stderr, "%s\n", "Demo mode is -demo, with one dash.");
        return 64;
    }
    const bool rendersScreenshot = parser.isSet(screenshot);
    const auto windowSize = parseSize(parser.value(size));
    const auto appearanceMode
        = AppearanceModes::fromRawValue(parser.value(appearance).toStdString());
    if (rendersScreenshot && (!windowSize || !appearanceMode)) {
        std::fprintf(stderr, "%s\n", "--size takes WxH, --appearance system, light or dark.");
        return 64;
    }

    Symbols::installFont();
    UnixSignals signalsToQuit;
    QObject::connect(&signalsToQuit, &UnixSignals::received, &application, &QCoreApplication::quit);

    // A screenshot never touches hardware or the user's preferences.
    QTemporaryDir scratch;
    const auto store = rendersScreenshot ? std::make_unique<QSettings>(
                           scratch.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat)
                                         : std::make_unique<QSettings>();
    const AppModel::Mode mode = rendersScreenshot ? AppModel::Mode::inert : AppModel::currentMode();
    // Only an inert station stays off the hardware; demo still lists the real inputs.
    std::unique_ptr<AudioCaptureBackend> backend;
    if (mode == AppModel::Mode::inert)
        backend = std::make_unique<SilentCaptureBackend>();
    else
        backend = std::make_unique<QtAudioCaptureBackend>();
    AppModel model(mode, std::make_unique<AppSettings>(*store), std::move(backend));

    StationShell::chooseRenderer();
    StationShell shell(model);
    if (!shell.load()) return 1;

    if (rendersScreenshot) {
        model.settings().display().setAppearance(*appearanceMode);
        model.settings().measurement().setCalibrationDate(std::chrono::system_clock::now());
        SampleContent::feed(model, std::chrono::system_clock::now());
        shell.renderToFile(QDir::current().absoluteFilePath(parser.value(screenshot)), *windowSize);
        return QGuiApplication::exec();
    }

    shell.reportFirstReading(launch);
    shell.show();
    return QGuiApplication::exec();
}
