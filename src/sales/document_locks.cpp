#include "sales/document_locks.h"

#include "stock/unit_locks.h"

namespace molven::document_locks {

namespace {

/// By the file's name on the server: workstations may write its address in several ways.
QString ofTable(SalesBook& book, const QString& what) {
    return book.vente.schema() + u' ' + book.kind().headers.name + u' ' + what;
}

QStringList ofNewNames(SalesBook& book, const Record& header) {
    return {ofTable(book, QStringLiteral("numbers")),
            QStringLiteral("address ") + header[book.kind().headers.fac_clt].toUpper()};
}

} // namespace

Locks ofNew(SalesBook& book, const Record& header) { return Locks::of(ofNewNames(book, header)); }

QString document(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    return ofTable(book, header[table.fac_aa] + u'/' + header[table.fac_no]);
}

Locks ofNewWith(SalesBook& book, const Record& header, const QStringList& units) {
    QStringList names = ofNewNames(book, header);
    for (const QString& unit : units) names.append(unit_locks::unit(unit));
    return Locks::of(names);
}

Locks ofLines(SalesBook& book, const Record& header, const QList<document_lines::Draft>& drafts) {
    QList<Record> lines;
    for (const document_lines::Draft& draft : drafts) lines.append(draft.line);
    return Locks::of(ofUnits(book.kind(), lines).names() + QStringList{document(book, header)});
}

Locks ofUnits(const DocumentKind& kind, const QList<Record>& lines) {
    const bool movesArticles = kind.isInvoice() || kind.isCredit || kind.isConsignment;
    QStringList names;
    for (const Record& line : lines) {
        const QString unit = line[kind.lines.fac_imm], reference = line[kind.lines.fac_ref];
        if (!unit.isEmpty()) names.append(unit_locks::unit(unit));
        if (unit.isEmpty() || movesArticles) names.append(unit_locks::article(reference));
    }
    return Locks::of(names);
}

} // namespace molven::document_locks
