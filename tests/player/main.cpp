// Tests of the player. Those with windows need a display: the engine draws only there.
#include <gtest/gtest.h>

#include <QApplication>

#include "PlayerScheme.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    zelk::setEngineFlags();
    zelk::registerPlayerScheme();
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle(QStringLiteral("fusion"));
    return RUN_ALL_TESTS();
}
