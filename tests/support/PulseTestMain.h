#pragma once

// The main of a Qt test that drives Qt Multimedia against the private PulseAudio server. Qt
// 6.4's PulseAudio engine can crash in its own teardown at process exit, after every test has
// run and reported (seen once under load). So the test object, and with it everything of ours,
// is destroyed as usual, and the process then ends without Qt's static teardown.
#include <QCoreApplication>
#include <QTest>
#include <cstdio>
#include <cstdlib>

#define OSTREL_PULSE_TEST_MAIN(TestObject)                                                         \
    int main(int argc, char** argv)                                                                \
    {                                                                                              \
        int status = 0;                                                                            \
        QCoreApplication application(argc, argv);                                                  \
        {                                                                                          \
            TestObject test;                                                                       \
            QTEST_SET_MAIN_SOURCE_PATH                                                             \
            status = QTest::qExec(&test, argc, argv);                                              \
        }                                                                                          \
        std::fflush(nullptr);                                                                      \
        std::_Exit(status);                                                                        \
    }
