#pragma once

#include "sales/papers.h"

namespace molven {

/// What one print screen is; another one is another description.
struct PrintScreen {
    /// Saves documents as electronic invoices in a folder; answers how many.
    using Electronic = qsizetype (*)(SalesBook& book, const QList<papers::Paper>& documents, const QString& folder,
                                     const Progress& told);

    QString name;              ///< of the form
    const char* onlyMode = ""; ///< its documents, where the mode word does not name them
    bool isExtract = false;    ///< lists lines of invoices instead of printing documents
};

/// The mode word under which a print screen shows documents of a kind.
QString printWords(const DocumentKind& kind);
/// The kind that a mode word names: of the sales unless it says the second book.
const DocumentKind& kindOfWords(const PrintScreen& screen, const QString& words, const CompanyRules& rules);

const PrintScreen& printScreen(const QString& name);
const QList<PrintScreen>& printScreens();
/// How documents of a kind are saved electronically; null where they have no electronic form.
PrintScreen::Electronic electronicForm(const DocumentKind& kind);

} // namespace molven
