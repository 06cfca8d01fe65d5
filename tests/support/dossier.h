#pragma once

#include "data/database.h"
#include "data/errors.h"
#include "sales/lines.h"
#include "sales/sales_book.h"
#include "shell/session.h"
#include "stock/receipt.h"
#include "support/data_folder.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace molven::test {

/// A new installation in a temporary folder, with a hospital, a supplier and articles to trade with.
class Dossier {
public:
    explicit Dossier(const QString& company = QStringLiteral("CE"));

    Session session;
    QString folder() const { return folder_.path(); }

    /// Client "000001", depot "101", discount category "A"; "000002" has depot "102".
    /// Articles: "HIP" (trade goods by unit, without VAT 100, with 105.50), "CUP" (manufactured), "GRAFT" (graft),
    /// "SCREW" (by movements), "NOTE" (text), "FEE" (not stocked).
    static void addReference(const Session& session);

    /// Receives units on a day "dd/mm/yyyy"; answers their immatriculations.
    QStringList receive(const QString& reference, int quantity, const QString& day = QStringLiteral("05/03/2026"));
    /// A receipt that every check accepts.
    static Receipt receipt(const QString& reference, int quantity, const QString& day = QStringLiteral("05/03/2026"));

    /// Writes a whole document with these units for a client; answers its number.
    QString document(const QString& mode, const QStringList& units, const QString& client = QStringLiteral("1"));
    Record unit(const QString& immatriculation);
    Decimal stock(const QString& reference);

private:
    QTemporaryDir folder_;
    std::unique_ptr<DataFolder> data_; ///< on a server
};

/// A header created for a client, and a line of an article or a unit, as a screen makes them.
Record newDocument(SalesBook& book, const QString& client = QStringLiteral("1"));
document_lines::Draft lineOfUnit(SalesBook& book, const Record& header, const QString& unit);
document_lines::Draft lineOfArticle(SalesBook& book, const Record& header, const QString& reference, int quantity = 1);

/// Text of the Refusal that a call ends with; "(accepté)" when it ends well.
template <class Call>
QString refusalOf(const Call& call) {
    try {
        call();
    } catch (const Refusal& refusal) {
        return refusal.text;
    }
    return QStringLiteral("(accepté)");
}

/// Field of the Refusal that a call ends with.
template <class Call>
QString refusedField(const Call& call) {
    try {
        call();
    } catch (const Refusal& refusal) {
        return refusal.field;
    }
    return {};
}

/// Number of the DataError that a call ends with, 0 when it ends well.
template <class Call>
int dataErrorOf(const Call& call) {
    try {
        call();
    } catch (const DataError& error) {
        return error.number;
    }
    return 0;
}

} // namespace molven::test

/// Shown by a failed comparison.
inline void PrintTo(const QString& text, std::ostream* stream) { *stream << '"' << text.toStdString() << '"'; }
namespace molven {
inline void PrintTo(const Decimal& value, std::ostream* stream) { *stream << value.toString().toStdString(); }
} // namespace molven
