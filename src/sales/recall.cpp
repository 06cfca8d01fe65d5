#include "sales/recall.h"

#include "data/database.h"
#include "data/dates.h"
#include "data/errors.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/document_tables.h"
#include "shell/other_folders.h"
#include "stock/units.h"

#include <QRegularExpression>

#include <algorithm>

namespace molven::recall {

namespace {

QString keyOf(const QString& date, const QString& field) {
    if (isEmptyDate(date)) return {};
    if (!dateFromText(date).isValid()) throw Refusal(QStringLiteral("date invalide"), field);
    return sortKey(date);
}

Criterion criterion(const RecallQuery& query) {
    const QString start = keyOf(query.firstDate, QStringLiteral("Mskdeb"));
    const QString end = keyOf(query.lastDate, QStringLiteral("Mskfin"));
    if (!start.isEmpty() && !end.isEmpty() && end < start)
        throw Refusal(QStringLiteral("date fin < date début"), QStringLiteral("Mskfin"));
    if (query.lot.trimmed().isEmpty() && query.supplierReference.trimmed().isEmpty() &&
        query.reference.trimmed().isEmpty())
        throw Refusal(QStringLiteral("Indiquez un lot, une référence fournisseur ou un article"),
                      strproduit.lot_art.name);
    Criterion all;
    if (!query.lot.trimmed().isEmpty()) all = all && strproduit.lot_art == query.lot.trimmed();
    if (!query.supplierReference.trimmed().isEmpty())
        all = all && strproduit.fou_ref == query.supplierReference.trimmed();
    if (!query.reference.trimmed().isEmpty()) all = all && strproduit.ref_art == query.reference.trimmed();
    if (!start.isEmpty()) all = all && strproduit.tri_liv >= start;
    if (!end.isEmpty()) all = all && strproduit.tri_liv <= end;
    return all;
}

/// The files that the story of a unit is told from.
struct Files {
    explicit Files(const Session& session)
        : molven(workspace.open(session.molven())),
          documents({workspace.open(session.vente())}),
          historic(workspace.open(session.historic())),
          others(session) {
        documents.append(historic);
        documents.append(others.files());
    }

    Workspace workspace;
    Database molven;
    QList<Database> documents; ///< own, archived, other folders'
    Database historic;
    OtherFolders others;
};

/// Surgeon of the document that delivered or sold the unit, looked for where its number says.
QString surgeonOf(Files& files, const Record& unit) {
    const std::pair<const DocumentHeaders*, const DocumentLines*> families[] = {
        {&strface, &strfacl}, {&strcsge, &strcsgl}, {&strlive, &strlivl}};
    for (Database documents : files.documents)
        for (const auto& [headers, lines] : families) {
            const auto line = documents.find(*lines, lines->fac_imm == unit[strproduit.imm_art] &&
                                                         lines->fac_no == unit[strproduit.num_vte]);
            if (!line) continue;
            const auto header = documents.find(*headers, headers->fac_no == (*line).value(lines->fac_no) &&
                                                             headers->fac_aa == (*line).value(lines->fac_aa));
            const QString code = header ? header->value(headers->fac_chr) : QString();
            if (!code.isEmpty()) return parameters::label(files.molven, list::Surgeon, code);
        }
    return {};
}

Record told(Files& files, const CompanyRules& rules, const Record& unit, bool archived) {
    const units::Situation now = units::situation(unit, rules);
    const QString patient = unit[strproduit.reg_pat], laidAt = unit[strproduit.reg_clt];
    const bool laid = !patient.isEmpty();
    const QString unitState = unit[strproduit.tes_vte];
    const bool hasLeft = unitState == state::Delivered || unitState == state::Sold;
    const bool atHome = !hasLeft && unit[strproduit.num_dep] == MainDepot;
    const QString hospital = laid && !laidAt.isEmpty() ? laidAt
                             : atHome                  ? QString()
                                                       : QString(unit[strproduit.clt_vte]);
    const auto client = parties::findClient(files.molven, hospital);
    Record row(strrappel);
    row[strrappel.rap_imm] = unit[strproduit.imm_art];
    row[strrappel.rap_ref] = unit[strproduit.ref_art];
    row[strrappel.rap_li1] = unit[strproduit.pro_li1];
    row[strrappel.rap_lot] = unit[strproduit.lot_art];
    row[strrappel.rap_per] = unit[strproduit.dat_per];
    row[strrappel.rap_etat] = unit[strproduit.tes_vte];
    row[strrappel.rap_dep] = unit[strproduit.num_dep];
    row[strrappel.rap_clt] = hospital;
    row[strrappel.rap_nom] = client ? QString((*client)[strclient.clt_nom]) : QString();
    row[strrappel.rap_pat] = patient;
    row[strrappel.rap_dat] = laid ? unit[strproduit.reg_dat] : unit[strproduit.dat_vte];
    row[strrappel.rap_doc] = unit[strproduit.num_vte];
    const QString place = QString(now.place).remove(QStringLiteral("(famille: )"));
    row[strrappel.rap_lieu] = now.document.isEmpty() ? place : place + QStringLiteral(" - ") + now.document;
    row[strrappel.rap_arc] = archived ? QStringLiteral("O") : QStringLiteral("N");
    if (unit[strproduit.tes_vte] != state::InStock) row[strrappel.rap_chr] = surgeonOf(files, unit);
    return row;
}

QString holderKey(const Record& unit) {
    const QString client = unit[strrappel.rap_clt];
    return client.isEmpty() ? u' ' + holder(unit) : client;
}

} // namespace

QList<Record> find(const Session& session, const RecallQuery& query) {
    const Criterion wanted = criterion(query);
    Files files(session);
    QList<Record> found;
    const auto look = [&](Database units, bool archived) {
        for (const Record& unit : units.select(strproduit, wanted, {strproduit.pro_ann, strproduit.imm_art}))
            found.append(told(files, session.rules(), unit, archived));
    };
    look(files.molven, false);
    for (const Database& archive : QList<Database>{files.historic} + files.others.archives()) look(archive, true);
    if (found.isEmpty())
        throw Refusal(QStringLiteral("Aucun produit correspondant à ce critère"), strproduit.lot_art.name);
    std::stable_sort(found.begin(), found.end(),
                     [](const Record& a, const Record& b) { return holderKey(a) < holderKey(b); });
    return found;
}

QString letterName(const RecallQuery& query, const QString& hospital, const QDate& day) {
    static const QRegularExpression unusable(QStringLiteral("[^\\w .-]"),
                                             QRegularExpression::UseUnicodePropertiesOption);
    QString subject;
    for (const QString& part : {query.lot, query.supplierReference, query.reference})
        if (subject.isEmpty()) subject = part.trimmed();
    return QStringLiteral("RAPPEL-%1-%2-%3.pdf")
        .arg(hospital, subject.replace(unusable, QStringLiteral("_")), day.toString(QStringLiteral("yyyyMMdd")));
}

QString letterSubject(const RecallQuery& query) {
    const std::pair<const char*, QString> parts[] = {{" DU LOT ", query.lot},
                                                     {" DE LA REFERENCE FOURNISSEUR ", query.supplierReference},
                                                     {" DE L'ARTICLE ", query.reference}};
    QString subject = QStringLiteral("RAPPEL");
    for (const auto& [kind, value] : parts)
        if (!value.trimmed().isEmpty()) subject += QString::fromLatin1(kind) + value.trimmed();
    if (!isEmptyDate(query.firstDate)) subject += QStringLiteral(" RECU DU ") + query.firstDate;
    if (!isEmptyDate(query.lastDate)) subject += QStringLiteral(" JUSQU'AU ") + query.lastDate;
    return subject;
}

QString words(const RecallQuery& query) {
    QStringList parts;
    const auto quoted = [&parts](const char* caption, const QString& value) {
        if (!isEmptyDate(value)) parts.append(QString::fromUtf8(caption) + value.trimmed() + u'\'');
    };
    quoted("N° Lot = '", query.lot);
    quoted("réf. fournisseur = '", query.supplierReference);
    quoted("référence = '", query.reference);
    quoted("reçu du '", query.firstDate);
    quoted("reçu jusqu'au '", query.lastDate);
    return QStringLiteral("Sélection : ") + parts.join(QStringLiteral(" et "));
}

QString holder(const Record& unit) {
    const QString client = unit[strrappel.rap_clt], name = unit[strrappel.rap_nom], depot = unit[strrappel.rap_dep];
    if (!client.isEmpty()) return QStringLiteral("Établissement : ") + (name.isEmpty() ? client : name);
    if (unit[strrappel.rap_etat] == state::InSet) return QStringLiteral("Dans un ancillaire, dépôt ") + depot;
    if (depot == MainDepot) return QStringLiteral("Au dépôt principal ") + depot;
    if (depot == ReturnedDepot) return QStringLiteral("Retournés au fournisseur");
    return QStringLiteral("Dépôt ") + depot;
}

QString stateWords(const Record& unit) {
    const QString words = units::stateName(unit[strrappel.rap_etat]);
    return unit[strrappel.rap_arc] == u"O" ? words + QStringLiteral(", archivé") : words;
}

} // namespace molven::recall
