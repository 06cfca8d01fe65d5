// Which documents there are, and which lines they have.

#include "data/format.h"
#include "data/require.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "sales/station.h"

namespace molven::documents {

std::optional<Record> last(SalesBook& book) {
    const DocumentHeaders& table = book.kind().headers;
    return book.vente.find(table, ofKind(book), Order::descending(table.fac_no));
}

std::optional<Record> before(SalesBook& book, const QString& number) {
    const DocumentHeaders& table = book.kind().headers;
    return book.vente.find(table, table.fac_no < padded(number, 6) && ofKind(book), Order::descending(table.fac_no));
}

std::optional<Record> after(SalesBook& book, const QString& number) {
    const DocumentHeaders& table = book.kind().headers;
    return book.vente.find(table, table.fac_no > padded(number, 6) && ofKind(book), table.fac_no);
}

QList<Record> unfinished(SalesBook& book) {
    const DocumentHeaders& table = book.kind().headers;
    QList<Record> found;
    const Order byStation{table.fac_pst, table.fac_no}; // by the number alone every document would be read
    for (const Record& header : book.vente.select(table, table.fac_pst > QString() && ofKind(book), byStation))
        if (station::isGone(header[table.fac_pst]) && book.vente.count(book.kind().lines, linesOf(book, header)) == 0)
            found.append(header);
    return found;
}

Criterion linesOf(SalesBook& book, const Record& header) {
    const DocumentHeaders& table = book.kind().headers;
    return numbering::linesOf(book.kind().lines, header[table.fac_aa], header[table.fac_no]);
}

Recordset lines(SalesBook& book, const Record& header) {
    const DocumentLines& lineTable = book.kind().lines;
    return book.vente.select(lineTable, linesOf(book, header), {lineTable.fac_no, lineTable.fac_lg});
}

QList<Record> linesRead(SalesBook& book, const Record& header) {
    QList<Record> read;
    for (const Record& line : lines(book, header)) read.append(line);
    return read;
}

Criterion documentsOf(SalesBook& book, const QString& client) {
    return book.kind().headers.fac_clt == padded(client, 6) && ofKind(book);
}

Recordset ofClient(SalesBook& book, const QString& client) {
    const DocumentHeaders& table = book.kind().headers;
    Recordset found = book.vente.select(table, documentsOf(book, client), {table.tri_datf, table.fac_no});
    if (found.isEmpty()) throw Refusal(book.kind().noneListed, table.fac_clt.name);
    return found;
}

} // namespace molven::documents
