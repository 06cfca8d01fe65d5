#include "play/engine_memory.h"
#include "play/player.h"
#include "ui/style.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QLocale>

int main(int argc, char* argv[]) {
    molven::play::leaveEngineUnwatched();
    qunsetenv("DISPLAY"); // windows of tests are never shown
    qunsetenv("WAYLAND_DISPLAY");
    molven::play::useScreen();
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    molven::style::apply(application);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
