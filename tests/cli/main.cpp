// The command-line client's tests run the vesk program with QProcess, which
// wants an application object in the test process.

#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
