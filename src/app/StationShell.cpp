#include "app/StationShell.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTimer>
#include <memory>

#include "app/FillScreenOnLaunch.h"

Q_LOGGING_CATEGORY(ostrelUi, "ostrel.ui")

namespace ostrel {

StationShell::StationShell(AppModel& model) : model_(model) { }

void StationShell::chooseRenderer()
{
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) return;
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface)) return;
    const auto* name = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    const QByteArray renderer = name ? QByteArray(name) : QByteArray();
    context.doneCurrent();
    for (const char* software : {"llvmpipe", "softpipe", "SWR", "Software Rasterizer"}) {
        if (renderer.contains(software)) {
            qCInfo(ostrelUi, "OpenGL is drawn by %s; using the software scene graph",
                renderer.constData());
            QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
            return;
        }
    }
}

QQuickWindow* StationShell::load()
{
    // The modules sit at the root of the resources, under their URIs; Qt 6.4 has no
    // loadFromModule.
    engine_.addImportPath(QStringLiteral("qrc:/"));
    engine_.setInitialProperties({{QStringLiteral("appModel"), QVariant::fromValue(&model_)}});
    engine_.load(QUrl(QStringLiteral("qrc:/Ostrel/Main/ContentView.qml")));
    const auto roots = engine_.rootObjects();
    window_ = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
    return window_;
}

void StationShell::show()
{
    if (!window_) return;
    if (model_.mode() != AppModel::Mode::inert) new FillScreenOnLaunch(*window_);
    window_->show();
}

void StationShell::reportFirstReading(const QElapsedTimer& launch)
{
    if (!window_) return;
    auto levelConnection = std::make_shared<QMetaObject::Connection>();
    *levelConnection = QObject::connect(
        &model_.meter(), &MeterModel::levelChanged, window_, [this, launch, levelConnection] {
            const auto level = model_.meter().level();
            if (!level) return;
            QObject::disconnect(*levelConnection);
            auto frameConnection = std::make_shared<QMetaObject::Connection>();
            // Direct, so that the time is taken on the render thread as the frame goes out.
            *frameConnection = QObject::connect(
                window_, &QQuickWindow::frameSwapped, window_,
                [launch, frameConnection, value = *level] {
                    QObject::disconnect(*frameConnection);
                    qCInfo(ostrelUi,
                        "First reading on screen %lld ms after launch (%.1f dB, at %lld)",
                        static_cast<long long>(launch.elapsed()), value,
                        static_cast<long long>(QDateTime::currentMSecsSinceEpoch()));
                },
                Qt::DirectConnection);
            window_->update();
        });
}

void StationShell::renderToFile(const QString& path, QSize size)
{
    if (!window_) return;
    window_->resize(size);
    window_->show();
    // Two frames: the first lays out, the second has every binding settled.
    auto frames = std::make_shared<int>(0);
    QObject::connect(window_, &QQuickWindow::frameSwapped, window_, [this, path, frames] {
        if (++*frames != 2) {
            window_->update();
            return;
        }
        QTimer::singleShot(0, window_, [this, path] {
            const bool saved = window_->grabWindow().save(path, "PNG");
            if (!saved) qCWarning(ostrelUi, "Could not write %s", qUtf8Printable(path));
            QCoreApplication::exit(saved ? 0 : 2);
        });
    });
}

} // namespace ostrel
