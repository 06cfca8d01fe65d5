#pragma once

#include "printing/document_page.h"
#include "sales/papers.h"

#include <QHash>

namespace molven::papers {

/// What the lines of any document need to be told of the reference data; read once for all documents of a job.
class LineKnowledge {
public:
    explicit LineKnowledge(SalesBook& book) : book_(book) {}

    /// Rate of a VAT code in percent.
    Decimal vatRate(const QString& code);
    /// English designation of an article; empty without one.
    QString english(const QString& reference);
    /// "Bon de livraison n° 000012 du 03/03/2026".
    QString noteTitle(const QString& number);

private:
    SalesBook& book_;
    QHash<QString, Decimal> rates_;
    QHash<QString, QString> english_, notes_;
};

/// Puts the columns and the lines of a document on its paper.
class LineWriter {
public:
    LineWriter(const DocumentKind& kind, const Style& style, LineKnowledge& known)
        : kind_(kind), style_(style), known_(known) {}

    bool hasPrices = true;
    bool hasEnglish = false;

    /// Throws DataError.
    void write(PaperDocument& paper, const Recordset& lines) const;

private:
    bool hasDiscounts(const Recordset& lines) const;
    QList<DocumentColumn> columns(bool withDiscounts) const;
    QStringList references(const Record& line) const;
    DocumentLine ofRecord(const Record& line, bool withDiscounts) const;
    QStringList priceCells(const Record& line, bool withDiscounts) const;
    QStringList details(const Record& line) const;
    QList<PaperFact> bars(const Record& line) const;

    const DocumentKind& kind_;
    const Style& style_;
    LineKnowledge& known_;
};

/// How amounts of money are written on paper.
inline const QString MoneyPattern = QStringLiteral("### ### ##0.00");

} // namespace molven::papers
