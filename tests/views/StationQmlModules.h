#pragma once

// The station's static QML modules, for a test executable that draws its windows. Include it
// from one source file of the executable only.
#include <QtQml/qqmlextensionplugin.h>

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
