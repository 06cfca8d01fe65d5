#include "screens/sales/print_screen.h"

#include "electronic/factur_x.h"
#include "electronic/invoice_of_paper.h"

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

namespace {

const QString SecondBook = QStringLiteral(" OSTRANE");

} // namespace

QString printWords(const DocumentKind& kind) { return kind.isSecondBook() ? kind.mode + SecondBook : kind.mode; }

const DocumentKind& kindOfWords(const PrintScreen& screen, const QString& words, const CompanyRules& rules) {
    const QString only = QString::fromLatin1(screen.onlyMode);
    const QString mode = only.isEmpty() ? words.section(u' ', 0, 0) : only;
    if (mode == u"PROFORMA") return proformaKind(rules);
    return documentKind(mode, words.endsWith(SecondBook) ? DataFile::Ostrane : DataFile::Vente);
}

PrintScreen::Electronic electronicForm(const DocumentKind& kind) {
    return electronic::hasElectronicForm(kind) ? electronic::saveFacturX : nullptr;
}

} // namespace molven
