#include "screens/sales/print_screen.h"

#include <algorithm>

namespace molven {

const QList<PrintScreen>& printScreens() {
    static const QList<PrintScreen> screens{
        {.name = QStringLiteral("T_docedt")},
        {.name = QStringLiteral("T_docedt2")},
        {.name = QStringLiteral("T_docedt3")},
        {.name = QStringLiteral("T_docbarre")},
        {.name = QStringLiteral("T_docedt4"), .onlyMode = "PROFORMA"},
        {.name = QStringLiteral("T_btredt"), .onlyMode = "BTR"},
        {.name = QStringLiteral("T_docext"), .onlyMode = "FAC", .isExtract = true},
    };
    return screens;
}

const PrintScreen& printScreen(const QString& name) {
    return *std::find_if(printScreens().begin(), printScreens().end(),
                         [&name](const PrintScreen& screen) { return screen.name == name; });
}

PrintScreen::Electronic electronicForm(const DocumentKind&) { return nullptr; }

} // namespace molven
