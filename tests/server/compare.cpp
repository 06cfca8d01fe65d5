// Tells where two dossiers differ: every table of every file, in the order of the records' keys.

#include "data/catalogue.h"
#include "data/database.h"
#include "data/journal_tables.h"
#include "dossier/creation.h"
#include "sales/document_tables.h"
#include "stock/depot_tables.h"
#include "stock/stock_tables.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>

using namespace molven;

namespace {

/// A name drawn at random, which tells one document or movement from another of the same number.
bool isDrawn(const Field& field) { return field.name == strface.fac_uid.name || field.name == strmvtstk.uid_stk.name; }

/// Keys of records that one statement changed alike.
QString sorted(const QString& keys) {
    QStringList lines = keys.split(u'\n');
    lines.sort();
    return lines.join(u'\n');
}

/// What a record says that neither a clock nor chance makes. An entry of the journal says a change word for word; of
/// a record that came or went it holds all, what was drawn included.
QStringList said(const Record& record) {
    static const QRegularExpression holder(QStringLiteral("\"fac_pst\":\\[[^\\]]*\\]")); // a process
    QStringList values;
    const bool isEntry = &record.table() == &strjournal;
    const bool isChange = isEntry && record[strjournal.jou_gen] == u"M" && record[strjournal.jou_tab] != strmvtstk.name;
    for (const Field* field : record.table().fields()) {
        const bool isOfTheMoment =
            field == &strjournal.jou_heu || field == &strsceau.sce_som || field->name == strinvlig.lig_jou.name;
        const bool holdsDrawn =
            isEntry && (field == &strjournal.jou_val || field == &strjournal.jou_cle || field == &strjournal.jou_cles);
        if (!isOfTheMoment && !isDrawn(*field) && (!holdsDrawn || isChange))
            values.append(
                field->name + u'=' +
                (field == &strjournal.jou_cles ? sorted(record.value(*field)) : record.value(*field).remove(holder)));
    }
    return values;
}

/// Work files and journals are filled in whatever order the engine finds the records of one statement.
QList<QStringList> said(const Recordset& records, bool inOrder) {
    QList<QStringList> found;
    for (const Record& record : records) found.append(said(record));
    if (!inOrder) std::sort(found.begin(), found.end());
    return found;
}

void compare(const Recordset& one, const Recordset& other, const QString& name, bool inOrder) {
    const QList<QStringList> a = said(one, inOrder), b = said(other, inOrder);
    const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    if (left == a.end() && right == b.end()) return;
    QTextStream told(stderr);
    told << name << QStringLiteral(" : %1 et %2 enregistrements").arg(a.size()).arg(b.size());
    if (left != a.end() && right != b.end())
        for (qsizetype i = 0; i < left->size(); ++i)
            if (left->at(i) != right->at(i))
                told << QStringLiteral(", le %1e : %2 et %3").arg(left - a.begin() + 1).arg(left->at(i), right->at(i));
    told << Qt::endl;
    std::exit(1);
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const QStringList homes = QCoreApplication::arguments().mid(1);
    const Session one = creation::open(homes[0]), other = creation::open(homes[1]);
    for (const CatalogueEntry& entry : catalogue()) {
        Workspace ours, theirs;
        if (!ours.has(one.path(entry.file)) || !theirs.has(other.path(entry.file))) continue;
        Database a = ours.open(one.path(entry.file)), b = theirs.open(other.path(entry.file));
        for (const Table* table : tablesOf(entry.file))
            compare(a.select(*table), b.select(*table), entry.name + u' ' + table->name,
                    entry.folder != Folder::Work && table != &strjournal);
    }
    return 0;
}
