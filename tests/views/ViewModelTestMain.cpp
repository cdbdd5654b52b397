// View model tests need a GUI application for fonts and key sequences, but no screen.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QLocale>

#include "views/components/Symbols.h"

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    ostrel::Symbols::installFont();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
