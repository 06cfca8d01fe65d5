#include "screens/stock/count_statement.h"

#include "data/format.h"

namespace molven {

namespace {

const auto& Row = strconstat;

QString freshnessWords(Freshness freshness) {
    return freshness == Freshness::Expired ? QStringLiteral("périmée")
           : freshness == Freshness::Soon  ? QStringLiteral("à périmer")
                                           : QString();
}

void addGroup(Report& report, const DepotCount& count, const QString& title, const QList<Record>& rows,
              const QString& note = {}) {
    if (rows.isEmpty()) return;
    report.group(QStringLiteral("%1 : %2").arg(title).arg(rows.size()), note);
    for (const Record& row : rows) {
        QStringList remarks{row[Row.lig_sit]};
        const bool isRead = row[Row.lig_lec] > Decimal();
        if (isRead && count.freshnessOf(row) != Freshness::Good)
            remarks.prepend(freshnessWords(count.freshnessOf(row)));
        if (row[Row.lig_lec] > Decimal(1)) remarks.append(QStringLiteral("lue %1 fois").arg(shown(row[Row.lig_lec])));
        remarks.removeAll(QString());
        report.row({row[Row.lig_imm], row[Row.lig_ref], row[Row.lig_lib], row[Row.lig_lot], row[Row.lig_ser],
                    row[Row.lig_per], remarks.join(QStringLiteral(", "))});
    }
}

QList<Record> expiring(const DepotCount& count, Freshness freshness) {
    QList<Record> found;
    for (const Record& row : count.readings())
        if (count.freshnessOf(row) == freshness) found.append(row);
    return found;
}

QString dayWords(const Record& header) {
    const QString begun = header[strinvdep.inv_dat], closed = header[strinvdep.inv_clo];
    if (begun.isEmpty()) return QStringLiteral("Pas encore commencé");
    return closed.isEmpty() ? QStringLiteral("Commencé le %1, en cours").arg(begun)
                            : QStringLiteral("Commencé le %1, clôturé le %2").arg(begun, closed);
}

} // namespace

QString countWords(const CountTally& tally) {
    return QStringList{
        counted(tally.expected, QStringLiteral("attendue")), counted(tally.found, QStringLiteral("trouvée")),
        counted(tally.missing, QStringLiteral("manquante")), counted(tally.unexpected, QStringLiteral("inattendue")),
        counted(tally.moved, QStringLiteral("déplacée"))}
        .join(QStringLiteral(", "));
}

Report countStatement(const DepotCount& count, const QString& depotName, const QString& company,
                      const QString& client) {
    const Record& header = count.header();
    const CountTally tally = count.tally();
    Report report((count.isClosed() ? QStringLiteral("INVENTAIRE DU DÉPÔT ")
                                    : QStringLiteral("ÉTAT PROVISOIRE DE L'INVENTAIRE DU DÉPÔT ")) +
                      QStringLiteral("%1 %2").arg(header[strinvdep.inv_dep], depotName),
                  {{QStringLiteral("Immatriculation")},
                   {QStringLiteral("Référence")},
                   {QStringLiteral("Désignation")},
                   {QStringLiteral("Lot")},
                   {QStringLiteral("N° de série")},
                   {QStringLiteral("Péremption")},
                   {QStringLiteral("Situation")}});
    if (!client.isEmpty()) report.say(QStringLiteral("Client : %1 %2").arg(header[strinvdep.inv_clt], client));
    report.say(QStringLiteral("Inventaire N° %1   %2   Compté par %3")
                   .arg(header[strinvdep.inv_no], dayWords(header), header[strinvdep.inv_par]));
    report.say(countWords(tally) + QStringLiteral(", %1, %2 à périmer dans les %3 mois")
                                       .arg(counted(tally.expired, QStringLiteral("périmée")))
                                       .arg(tally.soon)
                                       .arg(shown(header[strinvdep.inv_moi])));
    addGroup(report, count, QStringLiteral("MANQUANTES"), count.rows(verdict::Missing));
    addGroup(report, count, QStringLiteral("INATTENDUES"), count.rows(verdict::Unexpected));
    addGroup(report, count, QStringLiteral("DÉPLACÉES DEPUIS LEUR LECTURE"), count.rows(verdict::Moved));
    const QString again = QStringLiteral("déjà comptées parmi les unités lues");
    addGroup(report, count, QStringLiteral("PÉRIMÉES"), expiring(count, Freshness::Expired), again);
    addGroup(report, count, QStringLiteral("À PÉRIMER"), expiring(count, Freshness::Soon), again);
    addGroup(report, count, QStringLiteral("TROUVÉES"), count.rows(verdict::Found));
    if (count.isClosed())
        report.sign({QStringLiteral("Pour ") + company,
                     QStringLiteral("Pour ") + (client.isEmpty() ? QStringLiteral("le dépôt ") + depotName : client)});
    return report;
}

} // namespace molven
