#include "sales/renumbering.h"

#include "data/database.h"
#include "data/errors.h"
#include "data/format.h"
#include "sales/documents.h"
#include "stock/depot_tables.h"
#include "stock/stock_tables.h"
#include "stock/units.h"

#include <algorithm>

namespace molven::renumbering {

const QList<Renumbering>& families() {
    static const QList<Renumbering> all{
        {QStringLiteral("mnu_util_num_btr"),
         DataFile::Vente,
         strbtre,
         strbtrl,
         QStringLiteral("Changement Numéro des Bons de transfert ?"),
         {state::InStock, state::InSet}},
        {QStringLiteral("mnu_util_num_liv"),
         DataFile::Vente,
         strlive,
         strlivl,
         QStringLiteral("Changement Numéro des Bons de livraison ?"),
         {state::Delivered}},
        {QStringLiteral("mnu_util_num_fac"),
         DataFile::Vente,
         strface,
         strfacl,
         QStringLiteral("Changement Numéro des Factures ?"),
         {state::Sold, state::InStock}},
        {QStringLiteral("mnu_util_num_csg"),
         DataFile::Vente,
         strcsge,
         strcsgl,
         QStringLiteral("Changement Numéro des Bons de consignation ?"),
         {state::Sold, state::InStock}},
        {QStringLiteral("mnu_util_num_pro"),
         DataFile::Proforma,
         strface,
         strfacl,
         QStringLiteral("Changement Numéro des Proformas ?"),
         {}},
    };
    return all;
}

const Renumbering* ofMenu(const QString& menu) {
    const auto found = std::find_if(families().begin(), families().end(),
                                    [&menu](const Renumbering& family) { return family.menu == menu; });
    return found == families().end() ? nullptr : &*found;
}

namespace {

Refusal impossible() { return Refusal(QStringLiteral("Numérotation impossible"), QStringLiteral("Txtnum5")); }

/// The files that hold a document, its units and what names it, in one workspace.
struct Files {
    Files(const Session& session, DataFile file)
        : molven(workspace.open(session.molven())),
          documents(workspace.open(session.path(file))),
          all(file == DataFile::Vente ? QList<Database>{documents, workspace.open(session.historic())}
                                      : QList<Database>{documents}),
          proforma(workspace.open(session.path(DataFile::Proforma))),
          ancillaire(workspace.open(session.path(DataFile::Ancillaire))) {}

    Workspace workspace;
    Database molven;
    Database documents;
    QList<Database> all; ///< with the archive, if the family has one
    Database proforma;
    Database ancillaire;
};

/// An invoice that accounting has keeps its number and what it names: the notes that its lines come from.
void requireNotTransferred(const Files& files, const Renumbering& family, const QString& number) {
    const bool isInvoice = &family.headers == &strface && family.file == DataFile::Vente;
    if (!isInvoice && &family.headers != &strlive) return;
    QStringList invoices{number};
    if (!isInvoice) {
        invoices.clear();
        for (Database file : files.all)
            for (const QStringList& line : file.values(strfacl, {&strfacl.fac_no}, strfacl.fac_nbl == number))
                invoices.append(line);
        invoices.removeDuplicates();
    }
    for (Database file : files.all)
        if (file.count(strface, isOneOf(strface.fac_no, invoices) && strface.fac_cpt == documents::Transferred) > 0)
            throw Refusal(QStringLiteral("Document transféré non modifiable"), QStringLiteral("Txtnum5"));
}

/// An archived document keeps its number, too.
QString usable(const Files& files, const Renumbering& family, const QString& oldNumber, const QString& newNumber) {
    const QString number = padded(newNumber, 6);
    const bool wellFormed = number.size() == 6 && Decimal::parse(number) && number != u"000000";
    Database documents = files.documents;
    const bool exists = documents.count(family.headers, family.headers.fac_no == padded(oldNumber, 6)) == 1;
    qint64 taken = 0;
    for (Database file : files.all) taken += file.count(family.headers, family.headers.fac_no == number);
    if (!wellFormed || !exists || taken > 0) throw impossible();
    requireNotTransferred(files, family, padded(oldNumber, 6));
    return number;
}

/// The units whose last document is this one carry its number. Another family's document may bear the same
/// number: state and date tell them apart.
void renumberUnits(const Files& files, const Renumbering& family, const QString& from, const QString& to) {
    Database documents = files.documents;
    const auto header = documents.find(family.headers, family.headers.fac_no == to);
    const QString date = (*header)[family.headers.fac_datf];
    for (const Record& line :
         documents.select(family.lines, family.lines.fac_no == to && family.lines.fac_imm != QString())) {
        const Criterion unit = Immatriculation::fromText(line[family.lines.fac_imm]).criterion() &&
                               isOneOf(strproduit.tes_vte, family.unitStates) && strproduit.num_vte == from &&
                               strproduit.dat_vte == date;
        for (Database holder : {files.molven, files.all.last()}) {
            holder.update(strproduit, {{strproduit.nbl_dep, to}}, unit && strproduit.nbl_dep == from);
            holder.update(strproduit, {{strproduit.num_vte, to}}, unit);
        }
    }
}

/// The lines that took the units of a sale back name it.
void renumberCredits(const Files& files, const Renumbering& family, const QString& from, const QString& to) {
    for (Database file : files.all)
        for (const Record& line :
             file.select(family.lines, family.lines.fac_no == to && family.lines.fac_imm != QString()))
            for (const DocumentLines* credits : {&strfacl, &strcsgl})
                for (Database holder : files.all)
                    holder.update(*credits, {{credits->fac_ori, to}},
                                  credits->fac_imm == QString(line[family.lines.fac_imm]) && credits->fac_ori == from);
}

/// Counts name the documents that settled their units.
void renumberCounts(const Files& files, const Renumbering& family, const QString& from, const QString& to) {
    const QString mode = &family.headers == &strlive   ? QStringLiteral("LIV")
                         : &family.headers == &strbtre ? QStringLiteral("BTR")
                                                       : QString();
    if (mode.isEmpty()) return;
    Database molven = files.molven, documents = files.documents;
    for (const Record& line :
         documents.select(family.lines, family.lines.fac_no == to && family.lines.fac_imm != QString()))
        molven.update(strinvlig, {{strinvlig.lig_doc, to}},
                      strinvlig.lig_imm == line[family.lines.fac_imm] && strinvlig.lig_mod == mode &&
                          strinvlig.lig_doc == from);
}

/// Delivery notes name the invoice that took them over, and its lines the note they came from; a proforma names the
/// note made of it, a renewed transfer note the new one.
void renumberReferences(const Files& files, const Renumbering& family, const QString& from, const QString& to) {
    Database proforma = files.proforma;
    if (&family.headers == &strlive) proforma.update(strface, {{strface.fac_blv, to}}, strface.fac_blv == from);
    for (Database file : files.all) {
        if (&family.headers == &strface && family.file == DataFile::Vente)
            file.update(strlive, {{strlive.fac_blv, to}}, strlive.fac_blv == from);
        if (&family.headers == &strbtre)
            file.update(strbtre, {{strbtre.fac_eta, u'T' + to}}, strbtre.fac_eta == u'T' + from);
        if (&family.headers != &strlive) continue;
        file.update(strfacl, {{strfacl.fac_nbl, to}}, strfacl.fac_nbl == from);
        for (const Record& line : file.select(strfacl, strfacl.fac_nbl == to && strfacl.fac_imm != QString()))
            for (Database holder : {files.molven, files.all.last()})
                holder.update(strproduit, {{strproduit.ref_vte, QStringLiteral("BL/") + to}},
                              Immatriculation::fromText(line[strfacl.fac_imm]).criterion() &&
                                  strproduit.ref_vte == QStringLiteral("BL/") + from);
    }
}

} // namespace

void check(const Session& session, const Renumbering& family, const QString& oldNumber, const QString& newNumber) {
    usable(Files(session, family.file), family, oldNumber, newNumber);
}

void renumber(const Session& session, const Renumbering& family, const QString& oldNumber, const QString& newNumber) {
    Files files(session, family.file);
    Database documents = files.documents;
    Transaction transaction(files.workspace, QStringLiteral("Renumérotation"));
    const QString from = padded(oldNumber, 6);
    const QString to = usable(files, family, oldNumber, newNumber);
    Database ancillaire = files.ancillaire;
    documents.update(family.headers, {{family.headers.fac_no, to}}, family.headers.fac_no == from);
    documents.update(family.lines, {{family.lines.fac_no, to}}, family.lines.fac_no == from);
    if (!family.unitStates.isEmpty()) renumberUnits(files, family, from, to);
    renumberReferences(files, family, from, to);
    renumberCounts(files, family, from, to);
    if (&family.headers == &strbtre)
        ancillaire.update(strstock, {{strstock.stk_num_vte, to}}, strstock.stk_num_vte == from);
    const bool sells = &family.headers == &strface || &family.headers == &strcsge;
    if (family.file == DataFile::Vente && sells) renumberCredits(files, family, from, to);
    transaction.commit();
}

} // namespace molven::renumbering
