#include "screens/shell/day_lines.h"

#include "data/dates.h"
#include "data/format.h"
#include "reference/parameters.h"

#include <algorithm>

namespace molven {

namespace {

using style::Tone;

constexpr int LateDays = 30;    ///< a note that waits longer is late to be invoiced
constexpr qsizetype Depots = 5; ///< with a line of their own; the others share one

QString plural(qint64 count, const char* one, const char* several) {
    const QString number = format(Decimal(static_cast<long long>(count)), QStringLiteral("### ### ##0")).trimmed();
    return number + u' ' + QString::fromUtf8(count > 1 ? several : one);
}

/// Invalid when no document waits, or an old one bears no date.
QDate oldestOf(const day_work::Waiting& waiting) {
    return QDate::fromString(waiting.oldest, QStringLiteral("yyyyMMdd"));
}

/// "1 234,00 EUR HT, le plus ancien du 03/02/2026".
QString detailsOf(const day_work::Waiting& waiting, const Session& session, const char* oldest) {
    const QString amount =
        (format(waiting.amount, QStringLiteral("### ### ##0.00")) + u' ' + session.spe_mon).simplified() +
        QStringLiteral(" HT");
    const QString day = dateText(oldestOf(waiting));
    return day.isEmpty() ? amount : amount + QString::fromUtf8(oldest) + day;
}

DayLine expiryLine(const day_work::ExpiringDepot& depot, const QString& name, const QString& place,
                   const QString& limit) {
    const qint64 all = depot.past + depot.soon;
    QString details = depot.past == 0 ? QString() : plural(depot.past, "déjà périmée", "déjà périmées");
    if (depot.soon > 0 && depot.past > 0)
        details += QStringLiteral(", %1 d'ici %2").arg(depot.soon).arg(limit);
    else if (depot.soon > 0)
        details = QStringLiteral("d'ici %1").arg(limit);
    QHash<QString, QString> asked{{QStringLiteral("txtdat_per"), limit},
                                  {QStringLiteral("Cmbetat"), QStringLiteral("En stock")}};
    if (!depot.depot.isEmpty()) asked.insert(QStringLiteral("txtnum_dep"), depot.depot);
    return {name, depot.past > 0 ? Tone::Alarm : Tone::Warning,
            place + QStringLiteral(" : ") + plural(all, "unité à péremption", "unités à péremption"), details,
            openings::units(asked)};
}

/// The main depot, then the hospitals with most of them.
void addExpiries(QList<DayLine>& lines, const day_work::Figures& figures, const QDate& today) {
    const QString limit = day_work::lastMonthAhead(today);
    QList<day_work::ExpiringDepot> hospitals = figures.expiring;
    if (!hospitals.isEmpty() && hospitals.first().depot == MainDepot)
        lines.append(expiryLine(hospitals.takeFirst(), QStringLiteral("jour_per_001"),
                                QStringLiteral("Dépôt principal"), limit));
    std::stable_sort(hospitals.begin(), hospitals.end(),
                     [](const auto& a, const auto& b) { return a.past + a.soon > b.past + b.soon; });
    for (const auto& depot : hospitals.mid(0, Depots))
        lines.append(expiryLine(depot, QStringLiteral("jour_per_") + depot.depot,
                                (QStringLiteral("Dépôt ") + depot.depot + u' ' + depot.name).simplified(), limit));
    day_work::ExpiringDepot others;
    for (const auto& depot : hospitals.mid(Depots)) {
        others.past += depot.past;
        others.soon += depot.soon;
    }
    if (hospitals.size() > Depots)
        lines.append(expiryLine(others, QStringLiteral("jour_per_autres"),
                                plural(hospitals.size() - Depots, "autre dépôt", "autres dépôts"), limit));
}

void addSets(QList<DayLine>& lines, const day_work::Figures& figures) {
    const Opening sets{QStringLiteral("mnu1_fic_anc"), [](Form&) {}, QStringLiteral("AN_etat")};
    if (figures.setsOut > 0)
        lines.append({QStringLiteral("jour_anc_sortis"),
                      Tone::Away,
                      plural(figures.setsOut, "ancillaire chez un client", "ancillaires chez des clients"),
                      {},
                      sets});
    if (figures.setsPartial > 0)
        lines.append({QStringLiteral("jour_anc_incomplets"),
                      Tone::Warning,
                      plural(figures.setsPartial, "ancillaire incomplet", "ancillaires incomplets"),
                      {},
                      sets});
}

void addBackup(QList<DayLine>& lines, const QDate& last, const QDate& today) {
    const Opening backup{QStringLiteral("sauve_garde")};
    const QString name = QStringLiteral("jour_sauvegarde");
    if (!last.isValid())
        lines.append({name, Tone::Warning, QStringLiteral("Aucune sauvegarde connue de ce dossier"), {}, backup});
    else if (const qint64 days = last.daysTo(today); days > day_work::RecentDays)
        lines.append({name, Tone::Alarm, QStringLiteral("Dernière sauvegarde il y a %1 jours").arg(days),
                      QStringLiteral("le ") + dateText(last), backup});
}

/// "1 avoir", "2 bons de livraison".
QString documentsInWords(const DocumentKind& kind, qint64 count) {
    if (kind.mode == u"AVO") return plural(count, "avoir", "avoirs");
    if (kind.mode == u"AVG") return plural(count, "avoir de consignation", "avoirs de consignation");
    const QString words = (count > 1 ? kind.listTitle.section(u' ', 1) : kind.shownLabel).toLower();
    return plural(count, qUtf8Printable(words), qUtf8Printable(words));
}

} // namespace

QList<DayLine> linesToDo(const day_work::Figures& figures, const Session& session, const QDate& today) {
    QList<DayLine> lines;
    const DocumentKind& notes = documentKind(QStringLiteral("LIV"));
    if (const auto& open = figures.toInvoice; open.count > 0) {
        const QDate oldest = oldestOf(open);
        const bool isLate = oldest.isValid() && oldest.daysTo(today) > LateDays;
        lines.append({QStringLiteral("jour_bl"), isLate ? Tone::Warning : Tone::Away,
                      plural(open.count, "bon de livraison à facturer", "bons de livraison à facturer"),
                      detailsOf(open, session, ", le plus ancien du "),
                      openings::listing(notes, QStringLiteral("LES BONS DE LIVRAISON A FACTURER"),
                                        day_work::stillOpen(notes.headers))});
    }
    if (figures.withoutPatient > 0)
        lines.append({QStringLiteral("jour_patients"),
                      Tone::Warning,
                      plural(figures.withoutPatient, "unité vendue sans patient", "unités vendues sans patient"),
                      {},
                      openings::units({{QStringLiteral("Cmbetat"), QStringLiteral("Vendus sans patient")}})});
    addExpiries(lines, figures, today);
    if (figures.depotsUnder > 0)
        lines.append({QStringLiteral("jour_dotations"),
                      Tone::Warning,
                      plural(figures.depotsUnder, "dépôt sous sa dotation", "dépôts sous leur dotation"),
                      plural(figures.unitsLacking, "unité manque", "unités manquent"),
                      {QStringLiteral("mnu_vte_btr_rea")}});
    addSets(lines, figures);
    if (const auto& open = figures.proformas; open.count > 0) {
        const DocumentKind& kind = proformaKind(session.rules());
        const bool areQuotes = session.rules().callsProformasQuotes();
        lines.append({QStringLiteral("jour_proformas"), Tone::Away,
                      areQuotes ? QStringLiteral("%1 devis en attente").arg(open.count)
                                : plural(open.count, "proforma en attente", "proformas en attente"),
                      detailsOf(open, session, areQuotes ? ", le plus ancien du " : ", la plus ancienne du "),
                      openings::listing(kind, kind.listTitle + QStringLiteral(" EN ATTENTE"),
                                        day_work::stillOpen(kind.headers))});
    }
    addBackup(lines, figures.backup, today);
    return lines;
}

QList<DayLine> linesOfRecentDays(const day_work::Figures& figures, const QDate& today) {
    QList<DayLine> lines;
    if (figures.received > 0)
        lines.append({QStringLiteral("jour_recues"),
                      Tone::Good,
                      plural(figures.received, "unité reçue", "unités reçues"),
                      {},
                      openings::units({{QStringLiteral("DEBIMM"), figures.firstReceived},
                                       {QStringLiteral("FINIMM"), figures.lastReceived}})});
    for (const day_work::Written& written : figures.written) {
        const DocumentKind& kind = written.kind;
        const QString words = documentsInWords(kind, written.count);
        lines.append({QStringLiteral("jour_doc_") + kind.mode.toLower(),
                      Tone::Done,
                      words,
                      {},
                      openings::listing(kind, words + QStringLiteral(" ces derniers jours"),
                                        day_work::writtenRecently(kind, today))});
    }
    return lines;
}

} // namespace molven
