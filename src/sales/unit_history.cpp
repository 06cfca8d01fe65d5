#include "sales/unit_history.h"

#include "data/errors.h"
#include "sales/other_folders.h"
#include "stock/units.h"

namespace molven::unit_history {

namespace {

QList<Record> allOf(const Recordset& records) {
    QList<Record> rows;
    for (const Record& record : records) rows.append(record);
    return rows;
}

UnitTrail trail(Database unitFile, const QList<Database>& documents, const Immatriculation& unit) {
    const auto linesIn = [&](const DocumentLines& table) {
        QList<Record> rows;
        for (Database file : documents) rows += allOf(file.select(table, table.fac_imm == unit.number(), table.fac_no));
        return rows;
    };
    return {allOf(unitFile.select(strproduit, unit.criterion())), linesIn(strbtrl), linesIn(strlivl), linesIn(strfacl),
            linesIn(strcsgl)};
}

} // namespace

UnitHistory find(const Session& session, const QString& typed, Source source) {
    const Immatriculation unit =
        source == Source::Virtual ? Immatriculation::ofThisCentury(typed) : Immatriculation::fromText(typed);
    Workspace workspace;
    Database unitFile = workspace.open(source == Source::Virtual ? session.path(DataFile::Virtuel) : session.molven());
    Database vente = workspace.open(session.vente());
    Database historic = workspace.open(session.historic());
    UnitHistory history;
    history.immatriculation = unit.number();
    const OtherFolders others(session);
    history.current = trail(unitFile, QList<Database>{vente} + others.files(), unit);
    history.archived = trail(historic, {historic}, unit);
    if (history.current.unit.isEmpty() && history.archived.unit.isEmpty())
        throw Refusal(QStringLiteral("Immatriculation inconnue"), QStringLiteral("txtimm"));
    const Record& record =
        history.current.unit.isEmpty() ? history.archived.unit.first() : history.current.unit.first();
    history.label = record[strproduit.pro_li1];
    return history;
}

namespace {

void describe(QStringList& text, const QString& where, const UnitTrail& trail) {
    for (const Record& unit : trail.unit) {
        const units::Situation now = units::situation(unit, {});
        text.append(QStringLiteral("%1 : reçu le %2, lot %3, péremption %4, état %5, dépôt %6")
                        .arg(where, unit[strproduit.dat_liv], unit[strproduit.lot_art], unit[strproduit.dat_per],
                             unit[strproduit.tes_vte], unit[strproduit.num_dep]));
        text.append(where + QStringLiteral(" : ") + now.place);
        if (!now.document.isEmpty()) text.append(where + QStringLiteral(" : ") + now.document);
        if (const QString patient = unit[strproduit.reg_pat]; !patient.isEmpty())
            text.append(QStringLiteral("%1 : patient %2, le %3").arg(where, patient, unit[strproduit.reg_dat]));
    }
    const std::pair<QString, const QList<Record>&> families[] = {
        {QStringLiteral("bon de transfert"), trail.transfers},
        {QStringLiteral("bon de livraison"), trail.deliveries},
        {QStringLiteral("facture/avoir"), trail.invoices},
        {QStringLiteral("bon de consignation"), trail.consignments}};
    for (const auto& [family, lines] : families)
        for (const Record& line : lines)
            text.append(QStringLiteral("%1 : %2 N° %3 de %4, ligne %5, client %6")
                            .arg(where, family, line[strlivl.fac_no], line[strlivl.fac_aa], line[strlivl.fac_lg],
                                 line[strlivl.fac_clt]));
}

} // namespace

QStringList lines(const UnitHistory& history) {
    QStringList text{QStringLiteral("Suivi immatriculation : %1  %2").arg(history.immatriculation, history.label)};
    describe(text, QStringLiteral("en cours"), history.current);
    describe(text, QStringLiteral("archive"), history.archived);
    return text;
}

} // namespace molven::unit_history
