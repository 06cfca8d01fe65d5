#include "screens/sales/recall_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/safe_file.h"
#include "printing/letter.h"
#include "reference/code_kinds.h"
#include "reference/parties.h"
#include "reference/seller.h"
#include "stock/unit_tables.h"
#include "ui/edit.h"
#include "ui/unit_marks.h"

#include <QDir>
#include <QMap>

namespace molven {

namespace {

QList<GridColumn> recallColumns() {
    const auto& r = strrappel;
    return {{&r.rap_imm, QStringLiteral("Immatriculation"), 110},
            {&r.rap_ref, QStringLiteral("Référence"), 95},
            {&r.rap_li1, QStringLiteral("Désignation"), 290},
            {&r.rap_lot, QStringLiteral("Lot"), 85},
            stateColumn(r.rap_etat),
            {&r.rap_dep, QStringLiteral("Dépôt"), 50},
            {&r.rap_clt, QStringLiteral("Client"), 60},
            {&r.rap_nom, QStringLiteral("Nom"), 190},
            {&r.rap_pat, QStringLiteral("Patient"), 150},
            {&r.rap_chr, QStringLiteral("Chirurgien"), 140},
            {&r.rap_dat, QStringLiteral("Date"), 85},
            {&r.rap_doc, QStringLiteral("Document"), 75},
            {&r.rap_lieu, QStringLiteral("Situation"), 300}};
}

QString countOf(const QList<Record>& units) {
    const auto laid = std::count_if(units.begin(), units.end(),
                                    [](const Record& unit) { return !unit[strrappel.rap_pat].isEmpty(); });
    return QStringLiteral("Nbre sélection : %1, dont posés : %2").arg(units.size()).arg(laid);
}

/// What the hospital sends back, to be told apart from the letters of other recalls.
void addSlip(Letter& letter, const QString& hospital, qsizetype units) {
    const QString blank(24, u'.');
    letter.slipTitle = QStringLiteral("ACCUSÉ DE RÉCEPTION à retourner à ") + letter.sender;
    letter.slip = {
        letter.subject + QStringLiteral("   ") + letter.placeAndDate,
        QStringLiteral("Établissement : ") + hospital,
        QStringLiteral("Dispositifs concernés : %1   mis à part : %2   déjà posés : %2").arg(units).arg(blank),
        QStringLiteral("Introuvables (immatriculations) : ") + blank + blank + blank,
        QStringLiteral("Nom et fonction : ") + blank + blank,
        QStringLiteral("Date : %1   Signature et cachet :").arg(blank)};
}

Letter letterTo(const Session& session, const QStringList& senderAddress, const Record& client,
                const RecallQuery& query, const QList<Record>& units) {
    Letter letter;
    letter.sender = session.spe_nom;
    letter.senderAddress = senderAddress;
    letter.footer = session.spe_pied;
    letter.address.append(client[strclient.clt_nom]);
    for (const Label* line :
         {&strclient.clt_l1, &strclient.clt_l2, &strclient.clt_l3, &strclient.clt_l4, &strclient.clt_l5})
        if (const QString text = client[*line]; !text.isEmpty()) letter.address.append(text);
    letter.placeAndDate = QStringLiteral("Le ") + dateText(Clock::today());
    letter.subject = recall::letterSubject(query);
    letter.paragraphs = {
        QStringLiteral("Madame, Monsieur,"),
        QStringLiteral(
            "Les dispositifs médicaux ci-dessous, livrés ou déposés dans votre établissement, font l'objet d'un "
            "rappel. "
            "Nous vous prions de mettre à part sans délai ceux qui n'ont pas été posés, et d'informer les praticiens "
            "des patients concernés.")};
    letter.columns = {{QStringLiteral("Immatriculation")}, {QStringLiteral("Référence")},
                      {QStringLiteral("Désignation")},     {QStringLiteral("Lot")},
                      {QStringLiteral("Patient")},         {QStringLiteral("Date")},
                      {QStringLiteral("Document")}};
    for (const Record& unit : units)
        letter.rows.append({unit[strrappel.rap_imm], unit[strrappel.rap_ref], unit[strrappel.rap_li1],
                            unit[strrappel.rap_lot], unit[strrappel.rap_pat], unit[strrappel.rap_dat],
                            unit[strrappel.rap_doc]});
    letter.closing = {QStringLiteral(
        "Nous vous remercions de nous retourner l'accusé de réception ci-dessous et vous prions d'agréer, "
        "Madame, Monsieur, nos salutations distinguées.")};
    addSlip(letter, client[strclient.clt_nom], units.size());
    return letter;
}

Report reportOf(const RecallQuery& query, const QList<Record>& units) {
    const auto& r = strrappel;
    Report report(QStringLiteral("RAPPEL DE LOT"), {{QStringLiteral("Immatriculation")},
                                                    {QStringLiteral("Référence")},
                                                    {QStringLiteral("Désignation")},
                                                    {QStringLiteral("Lot")},
                                                    {QStringLiteral("Péremption")},
                                                    {QStringLiteral("Etat")},
                                                    {QStringLiteral("Dépôt")},
                                                    {QStringLiteral("Patient")},
                                                    {QStringLiteral("Chirurgien")},
                                                    {QStringLiteral("Date")},
                                                    {QStringLiteral("Document")},
                                                    {QStringLiteral("Situation")}});
    report.say(recall::words(query));
    QString group;
    for (const Record& unit : units) {
        const QString client = unit[r.rap_clt], holder = recall::holder(unit);
        if (client + holder != group) report.group(holder, client);
        group = client + holder;
        report.row({unit[r.rap_imm], unit[r.rap_ref], unit[r.rap_li1], unit[r.rap_lot], unit[r.rap_per],
                    recall::stateWords(unit), unit[r.rap_dep], unit[r.rap_pat], unit[r.rap_chr], unit[r.rap_dat],
                    unit[r.rap_doc], unit[r.rap_lieu]});
    }
    report.total(countOf(units));
    return report;
}

} // namespace

RecallForm::RecallForm(Desk& desk)
    : SelectionForm(desk, QStringLiteral("T_rappel")), molven_(workspace_.open(session().molven())) {
    using Kind = CriterionBox::Kind;
    build({.title = QStringLiteral("Rappel de lot"),
           .criteria = {{QStringLiteral("txtlot_art"), QStringLiteral("Lot :"), 20},
                        {QStringLiteral("txtfou_ref"), QStringLiteral("Réf. fournisseur :"), 20},
                        {.name = QStringLiteral("txtref_art"),
                         .caption = QStringLiteral("Article :"),
                         .code = &codes::Article},
                        {QStringLiteral("Mskdeb"), QStringLiteral("Reçu du :"), 10, Kind::Day},
                        {QStringLiteral("Mskfin"), QStringLiteral("au :"), 10, Kind::Day}},
           .across = 5,
           .list = recallColumns(),
           .searches = {{QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { find(); }}},
           .deeds = {{QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }},
                     {QStringLiteral("Cmdexp"), QStringLiteral("E&xporter"), [this] { exportAll(); }},
                     {QStringLiteral("Cmdlettre"), QStringLiteral("&Lettres aux établissements"),
                      [this] { writeLetters(); }}},
           .files = {{DataFile::Molven, molven_}},
           .count = QStringLiteral("Label1"),
           .size = {1240, 700}});
    bind(strproduit.lot_art.name, criteria().edit(QStringLiteral("txtlot_art")));
    list().exportWanted = [this] { guarded([this] { exportAll(); }); };
}

/// Every unit of the recall, whatever filter is typed in the list on the screen.
void RecallForm::exportAll() {
    requireUnits();
    Grid all(list().objectName(), recallColumns(), this);
    all.rows().setRecords(units_);
    all.exportCsv();
}

RecallQuery RecallForm::typedQuery() const {
    const auto value = [this](const char* name) { return criteria().value(QString::fromLatin1(name)); };
    return {value("txtlot_art"), value("txtfou_ref"), value("txtref_art"), value("Mskdeb"), value("Mskfin")};
}

void RecallForm::find() {
    clearSelection();
    query_ = typedQuery();
    units_ = recall::find(session(), query_);
    showRows(units_, countOf(units_));
}

void RecallForm::requireUnits() const {
    requireSelection();
    if (!(typedQuery() == query_))
        throw Refusal(QStringLiteral("Les critères ont changé depuis la recherche : rechercher d'abord"),
                      strproduit.lot_art.name);
}

void RecallForm::print() {
    requireUnits();
    desk().print(reportOf(query_, units_));
}

/// One PDF a hospital, in the work folder; none takes the place of an earlier one.
void RecallForm::writeLetters() {
    requireUnits();
    QMap<QString, QList<Record>> byHospital;
    for (const Record& unit : units_)
        if (const QString hospital = unit[strrappel.rap_clt]; !hospital.isEmpty()) byHospital[hospital].append(unit);
    if (byHospital.isEmpty()) throw Refusal(QStringLiteral("Aucun établissement concerné"), strproduit.lot_art.name);
    const QString folder = session().chemin_tri + QStringLiteral("rappel");
    if (!QDir().mkpath(folder)) throw Refusal(QStringLiteral("Impossible de créer le dossier %1").arg(folder));
    const QStringList address = seller::addressLines(seller::read(molven_));
    for (auto hospital = byHospital.begin(); hospital != byHospital.end(); ++hospital) {
        const Record client = parties::findClient(molven_, hospital.key()).value_or(Record(strclient));
        printed(letterTo(session(), address, client, query_, hospital.value()))
            .savePdf(freeName(folder + u'/' + recall::letterName(query_, hospital.key(), Clock::today())));
    }
    notify(QStringLiteral("Lettres enregistrées dans %1 : %2")
               .arg(QDir::toNativeSeparators(folder))
               .arg(byHospital.size()));
}

} // namespace molven
