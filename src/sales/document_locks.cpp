#include "sales/document_locks.h"

#include "stock/unit_locks.h"

namespace molven::document_locks {

namespace {

/// By the file's name on the server: workstations may write its address in several ways.
QString ofTable(const Database& file, const DocumentHeaders& table, const QString& what) {
    return file.schema() + u' ' + table.name + u' ' + what;
}

QStringList ofNewNames(SalesBook& book, const Record& header) {
    return {ofTable(book.vente, book.kind().headers, QStringLiteral("numbers")),
            QStringLiteral("address ") + header[book.kind().headers.fac_clt].toUpper()};
}

} // namespace

Locks ofNew(SalesBook& book, const Record& header) { return Locks::of(ofNewNames(book, header)); }

QString document(SalesBook& book, const Record& header) { return document(book.vente, book.kind().headers, header); }

QString document(const Database& file, const DocumentHeaders& table, const Record& header) {
    return ofTable(file, table, header[table.fac_aa] + u'/' + header[table.fac_no]);
}

Locks ofStanding(SalesBook& book, const Record& header, const QList<Record>& lines) {
    return ofUnits(book.kind(), lines).with({document(book, header)});
}

Locks ofNewWith(SalesBook& book, const Record& header, const QStringList& units) {
    return ofNew(book, header).with(unit_locks::units(units));
}

Locks ofLines(SalesBook& book, const Record& header, const QList<document_lines::Draft>& drafts) {
    QList<Record> lines;
    for (const document_lines::Draft& draft : drafts) lines.append(draft.line);
    return ofStanding(book, header, lines);
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
