// Tests of the editor's windows, without a display.
#include <gtest/gtest.h>

#include <QApplication>

#include "Theme.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    zelk::applyStyle();
    return RUN_ALL_TESTS();
}
