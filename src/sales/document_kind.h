#pragma once

#include "data/catalogue.h"
#include "sales/changed_elsewhere.h"
#include "sales/document_tables.h"
#include "shell/company_rules.h"

#include <QList>

#include <vector>

namespace molven {

/// What one kind of sales document is: its tables, its words, its effect on a unit.
struct DocumentKind {
    QString mode; ///< "LIV", "CSG", "FAC", "AVO", "AVG", "BTR", "PROFORMA"
    const DocumentHeaders& headers;
    const DocumentLines& lines;
    const Text& depot;     ///< of the header: where the document leaves its units
    QString title;         ///< of the screen
    QString label;         ///< on the header while entering
    QString shownLabel;    ///< once a document is displayed
    QString listTitle;     ///< of the list of a client's documents
    QString noneListed;    ///< said when a client has none
    QString unitState;     ///< what a unit becomes
    bool isCredit = false; ///< takes units back
    bool isConsignment = false;
    bool isDeletable = false;
    bool isPriced = true;     ///< its lines have prices, its headers totals
    QList<WatchedField> open; ///< what of its header may still be changed
    QString openWords;        ///< the same, as the user is told
    /// What it is and which screen has it, for a number typed in the other screen of its series.
    QString whereabouts = {};
    DataFile file = DataFile::Vente;  ///< that holds it: the sales, the proformas or the second book
    bool hasUnits = true;             ///< its lines name units, and move them
    bool movesStock = true;           ///< its lines move the stock of articles kept by quantity
    bool takesTrackedArticles = true; ///< articles followed by unit may stand on it
    QString confirmDeletion = {};     ///< question before it is deleted
    QString notDeletable = QStringLiteral("Impossible de supprimer une Facture ou un Avoir ou un bon consignation");
    QString transferredWords = {}; ///< said when it was transferred and is to be deleted
    QString droppedWords = {};     ///< said when one without lines is dropped at its closing; asked when empty

    bool isDelivery() const { return mode == u"LIV"; }
    bool isInvoice() const { return mode == u"FAC"; }
    /// Moves units between depots, without sale.
    bool isTransfer() const { return mode == u"BTR"; }
    bool isProforma() const { return file == DataFile::Proforma; }
    bool isSecondBook() const { return file == DataFile::Ostrane; }
    bool isInvoicing() const { return isInvoice() || isCredit || isProforma(); }
    /// Whether both number their documents in one series.
    bool sharesSeries(const DocumentKind& other) const { return &headers == &other.headers && file == other.file; }
};

const std::vector<DocumentKind>& documentKinds();
/// The kind of a mode word in a file of documents. Throws Refusal for an unknown one.
const DocumentKind& documentKind(const QString& mode, DataFile file = DataFile::Vente);
/// Proformas, in the words of the company: it may call them quotes.
const DocumentKind& proformaKind(const CompanyRules& rules);

} // namespace molven
