// The screen tests: the main screen as a whole, then its panes and sheets one by one.
#include <QGuiApplication>
#include <QTest>

int runMainScreenTests(int argc, char** argv);
int runPaneScreenTests(int argc, char** argv);

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    QTEST_SET_MAIN_SOURCE_PATH
    const int screen = runMainScreenTests(argc, argv);
    const int panes = runPaneScreenTests(argc, argv);
    return screen != 0 ? screen : panes;
}
