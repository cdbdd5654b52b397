// Settings groups announce changes on the next turn of an event loop, so their tests run under a
// core application.
#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
