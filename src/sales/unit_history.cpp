#include "sales/unit_history.h"

#include "data/errors.h"
#include "sales/unit_steps.h"
#include "shell/other_folders.h"
#include "stock/units.h"

namespace molven::unit_history {

namespace {

/// What collect() will read.
void foresee(Database file, const Immatriculation& unit) {
    for (const DocumentLines* table :
         std::initializer_list<const DocumentLines*>{&strbtrl, &strlivl, &strfacl, &strcsgl})
        file.foreseeAll(*table, table->fac_imm == unit.number(), table->fac_no);
}

/// Puts the lines that one file has of a unit to the others of the trail, and their steps on its road.
void collect(UnitTrail& trail, QList<Record>& road, Database file, const Immatriculation& unit,
             const QString& whose = {}) {
    const auto linesIn = [&](const DocumentLines& table) {
        return file.all(table, table.fac_imm == unit.number(), table.fac_no);
    };
    const UnitTrail found{{}, linesIn(strbtrl), linesIn(strlivl), linesIn(strfacl), linesIn(strcsgl)};
    trail.transfers += found.transfers;
    trail.deliveries += found.deliveries;
    trail.invoices += found.invoices;
    trail.consignments += found.consignments;
    QList<Record> steps = unit_steps::documents(found, file);
    for (Record& step : steps) step[strsuivi.sui_arc] = whose;
    road += steps;
}

} // namespace

UnitHistory find(const Session& session, const QString& typed, Source source) {
    const Immatriculation unit =
        source == Source::Virtual ? Immatriculation::ofThisCentury(typed) : Immatriculation::fromText(typed);
    Workspace workspace;
    Database unitFile = workspace.open(source == Source::Virtual ? session.path(DataFile::Virtuel) : session.molven());
    Database vente = workspace.open(session.vente());
    Database historic = workspace.open(session.historic());
    const OtherFolders others(session);
    const Reading reading(workspace);
    for (Database file : {vente, historic}) foresee(file, unit);
    historic.foreseeAll(strproduit, unit.criterion());
    UnitHistory history;
    history.immatriculation = unit.number();
    history.current.unit = unitFile.all(strproduit, unit.criterion());
    for (Database file : QList<Database>{historic} + others.archives())
        history.archived.unit += file.all(strproduit, unit.criterion());
    if (history.current.unit.isEmpty() && history.archived.unit.isEmpty())
        throw Refusal(QStringLiteral("Immatriculation inconnue"), QStringLiteral("txtimm"));
    const Record& record =
        history.current.unit.isEmpty() ? history.archived.unit.first() : history.current.unit.first();
    history.label = record[strproduit.pro_li1];
    QList<Record> road{unit_steps::arrival(record)};
    collect(history.current, road, vente, unit);
    for (const Database& file : others.files())
        collect(history.current, road, file, unit, QStringLiteral("autre dossier"));
    collect(history.archived, road, historic, unit, QStringLiteral("archive"));
    history.steps = unit_steps::sorted(road + unit_steps::stay(record));
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
