#include "dossier/check.h"

#include "data/database.h"
#include "data/errors.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "dossier/references.h"
#include "reference/articles.h"
#include "sales/document_kind.h"
#include "shell/tables.h"
#include "stock/stock_tables.h"
#include "stock/units.h"

#include <QFile>
#include <QSet>

namespace molven::check {

namespace {

using Faults = QList<Fault>;

void checkFile(const CatalogueEntry& entry, const QString& path, Faults& faults) {
    const auto fault = [&](const QString& subject, const QString& text) { faults.append({entry.name, subject, text}); };
    try {
        Workspace workspace;
        Database file = workspace.open(path);
        for (const QString& engineFault : file.integrityFaults())
            fault(entry.name, QStringLiteral("contrôle du moteur : ") + engineFault);
        for (const Table* table : tablesOf(entry.file)) {
            const QStringList columns = file.columns(*table);
            if (columns.isEmpty()) {
                fault(table->name, QStringLiteral("table absente"));
                continue;
            }
            for (const Field* field : table->fields())
                if (!columns.contains(field->name, Qt::CaseInsensitive))
                    fault(table->name, QStringLiteral("champ %1 absent").arg(field->name));
        }
        if (tablesOf(entry.file).contains(&strjournal))
            for (const QString& broken : Journal::faults(file)) fault(strjournal.name, broken);
    } catch (const DataError& error) {
        fault(entry.name, error.description);
    }
}

struct Family {
    const DocumentHeaders& headers;
    const DocumentLines& lines;
    QString name;
};

const QList<Family>& families() {
    static const QList<Family> all{{strlive, strlivl, QStringLiteral("bon de livraison")},
                                   {strcsge, strcsgl, QStringLiteral("bon de consignation")},
                                   {strface, strfacl, QStringLiteral("facture")},
                                   {strbtre, strbtrl, QStringLiteral("bon de transfert")}};
    return all;
}

/// Every document of one family: header and lines go together, lines follow a hidden record. A document emptied by its
/// user keeps the hidden record, one whose creation was cut short has none.
void checkDocuments(Database documents, const QString& file, const Family& family, Faults& faults) {
    QSet<QString> headers;
    for (const Record& row : documents.select(family.headers))
        headers.insert(row[family.headers.fac_aa] + u'/' + row[family.headers.fac_no]);
    QSet<QString> hidden, lined;
    for (const Record& row : documents.select(family.lines)) {
        const QString key = row[family.lines.fac_aa] + u'/' + row[family.lines.fac_no];
        (row[family.lines.fac_lg] == u"000" ? hidden : lined).insert(key);
    }
    for (const QString& key : (lined | hidden) - headers)
        faults.append({file, family.name + u' ' + key, QStringLiteral("lignes sans en-tête")});
    for (const QString& key : headers - lined - hidden)
        faults.append({file, family.name + u' ' + key, QStringLiteral("aucune ligne")});
    for (const QString& key : lined - hidden)
        faults.append({file, family.name + u' ' + key, QStringLiteral("enregistrement 000 absent")});
}

/// Immatriculation and number of every line of some tables.
QSet<QString> unitsOn(const QList<Database>& files, const QList<const DocumentLines*>& tables) {
    QSet<QString> found;
    for (Database file : files)
        for (const DocumentLines* table : tables)
            for (const Record& row : file.select(*table, table->fac_imm != QString()))
                found.insert(row[table->fac_imm] + u'/' + row[table->fac_no]);
    return found;
}

void checkUnit(const Record& unit, const QSet<QString>& delivered, const QSet<QString>& sold,
               const QSet<QString>& inSets, Faults& faults) {
    const QString name = unit[strproduit.imm_art];
    const QString unitState = unit[strproduit.tes_vte];
    const QString key = name + u'/' + unit[strproduit.num_vte];
    const auto fault = [&](const QString& text) { faults.append({QStringLiteral("molven.mdb"), name, text}); };
    if (unitState == state::Sold && unit[strproduit.num_dep] != ReturnedDepot && !sold.contains(key))
        fault(QStringLiteral("vendue sans ligne sur la facture ou le bon de consignation ") + unit[strproduit.num_vte]);
    if (unitState == state::Delivered && !delivered.contains(key))
        fault(QStringLiteral("livrée sans ligne sur le bon de livraison ") + unit[strproduit.num_vte]);
    if (unitState == state::InSet && !inSets.contains(name))
        fault(QStringLiteral("dans un ancillaire qui ne la contient pas"));
    if (!QStringLiteral("NLOA").contains(unitState) || unitState.size() != 1)
        fault(QStringLiteral("état inconnu : ") + unitState);
}

void checkUnits(Database molven, Database vente, Database historic, Database ancillaire, Faults& faults) {
    const QList<Database> files{vente, historic};
    const QSet<QString> delivered = unitsOn(files, {&strlivl});
    const QSet<QString> sold = unitsOn(files, {&strfacl, &strcsgl});
    QSet<QString> inSets;
    for (const Record& row : ancillaire.select(strstock, strstock.stk_imm_art != QString()))
        inSets.insert(row[strstock.stk_imm_art]);
    QSet<QString> seen;
    QHash<QString, qint64> inStock;
    for (const Record& unit : molven.select(strproduit)) {
        const QString key = unit[strproduit.pro_ann] + unit[strproduit.imm_art];
        if (seen.contains(key))
            faults.append({QStringLiteral("molven.mdb"), key, QStringLiteral("immatriculation en double")});
        seen.insert(key);
        if (unit[strproduit.tes_vte] != state::Sold) ++inStock[unit[strproduit.ref_art].toUpper()];
        checkUnit(unit, delivered, sold, inSets, faults);
    }
    for (const Record& row : historic.select(strproduit))
        if (seen.contains(row[strproduit.pro_ann] + row[strproduit.imm_art]))
            faults.append({QStringLiteral("historic.mdb"), row[strproduit.imm_art],
                           QStringLiteral("immatriculation aussi dans molven.mdb")});
    for (const Record& row : molven.select(strarticle, strarticle.art_aig == follow_up::ByUnit)) {
        const QString reference = row[strarticle.art_ref];
        const Decimal counted = static_cast<long long>(inStock.take(reference.toUpper()));
        if (const Decimal stock = row[strarticle.art_stk]; stock != counted)
            faults.append({QStringLiteral("molven.mdb"), reference,
                           QStringLiteral("art_stk = %1 pour %2 unités").arg(stock.toString(), counted.toString())});
    }
    for (auto left = inStock.begin(); left != inStock.end(); ++left)
        faults.append(
            {QStringLiteral("molven.mdb"), left.key(), QStringLiteral("unités d'un article absent ou non suivi")});
}

void checkInvoicedNotes(Database vente, Database historic, Faults& faults) {
    for (const Record& note : vente.select(strlive, strlive.fac_cpt == QStringLiteral("T"))) {
        const QString invoice = note[strlive.fac_blv];
        const auto fault = [&](const QString& text) {
            faults.append({QStringLiteral("vente.mdb"), QStringLiteral("bon de livraison ") + note[strlive.fac_no],
                           text.arg(invoice)});
        };
        const Criterion same = strface.fac_no == invoice;
        const Criterion taken = strfacl.fac_no == invoice && strfacl.fac_nbl == note[strlive.fac_no] &&
                                strfacl.fac_lg != QStringLiteral("000");
        if (vente.count(strface, same) + historic.count(strface, same) == 0)
            fault(QStringLiteral("facture %1 absente"));
        else if (vente.count(strfacl, taken) + historic.count(strfacl, taken) == 0)
            fault(QStringLiteral("la facture %1 n'en porte aucune ligne"));
    }
}

} // namespace

QList<Fault> run(const Session& session) {
    Faults faults;
    for (const CatalogueEntry& entry : catalogue()) {
        const QString path = session.path(entry.file);
        if (entry.file == DataFile::Societe && !QFile::exists(path)) continue;
        checkFile(entry, path, faults);
    }
    if (!faults.isEmpty()) return faults; // the rules below read files that must be sound
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database vente = workspace.open(session.vente());
    Database historic = workspace.open(session.historic());
    Database ancillaire = workspace.open(session.path(DataFile::Ancillaire));
    if (molven.count(strspecif) != 1)
        faults.append(
            {QStringLiteral("molven.mdb"), strspecif.name, QStringLiteral("un enregistrement et un seul est attendu")});
    for (const Family& family : families()) {
        checkDocuments(vente, QStringLiteral("vente.mdb"), family, faults);
        checkDocuments(historic, QStringLiteral("historic.mdb"), family, faults);
    }
    checkUnits(molven, vente, historic, ancillaire, faults);
    checkInvoicedNotes(vente, historic, faults);
    references::Files files(session);
    for (const references::Orphan& orphan : references::orphans(files))
        faults.append({orphan.file, orphan.code, orphan.text});
    return faults;
}

} // namespace molven::check
