#include "dossier/check/checks.h"

#include "data/format.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "dossier/demo.h"
#include "reference/articles.h"
#include "sales/document_tables.h"
#include "sales/documents.h"
#include "sales/stock_rebuild.h"
#include "shell/other_folders.h"
#include "stock/movements.h"

namespace molven::check {

namespace {

const QString MovementsFile = QStringLiteral("molven.mdb");

/// By reference in upper case, as the engine compares them.
using Quantities = QHash<QString, Decimal>;

void add(Quantities& quantities, const QHash<QString, Decimal>& found, int sign) {
    for (auto one = found.begin(); one != found.end(); ++one)
        quantities[one.key().toUpper()] += Decimal(sign) * one.value();
}

/// What a movement says that none may.
QString faultOf(Database molven, const Record& movement) {
    const auto& m = strmvtstk;
    const QString kind = movement[m.eta_stk];
    if (kind != movement::Entry && kind != movement::Exit && kind != movement::Inventory)
        return QStringLiteral("mouvement « %1 » : ni entrée, ni sortie, ni inventaire").arg(kind);
    if (!(movement[m.qte_stk] > Decimal(0)))
        return QStringLiteral("mouvement de quantité %1").arg(shown(movement[m.qte_stk]));
    const auto article = articles::find(molven, movement[m.ref_stk]);
    if (article && article->value(strarticle.art_aig) != follow_up::ByMovements)
        return QStringLiteral("mouvement d'un article qui n'est pas tenu par quantité");
    return {};
}

Criterion untracked(const DocumentLines& lines) { return lines.fac_imm == QString(); }

void takeLines(Database file, const DocumentLines& lines, Quantities& stocks) {
    add(stocks, file.sumBy(lines, lines.fac_ref, lines.fac_qte, untracked(lines)), -1);
}

/// What the documents of a file took out of the stock: an invoice holds the lines of the notes it took over.
void takeSold(Database file, Quantities& stocks) {
    takeLines(file, strfacl, stocks);
    takeLines(file, strcsgl, stocks);
    QSet<QString> invoiced;
    for (const Record& note : file.select(strlive, strlive.fac_cpt == QString(documents::Transferred)))
        invoiced.insert(note[strlive.fac_aa] + u'/' + note[strlive.fac_no]);
    for (const Record& line : file.select(strlivl, untracked(strlivl)))
        if (!invoiced.contains(line[strlivl.fac_aa] + u'/' + line[strlivl.fac_no]))
            stocks[line[strlivl.fac_ref].toUpper()] -= line[strlivl.fac_qte];
}

/// Whether movements and documents alone made the stock of an article: it is as old as the journal, was always kept by
/// quantity, and nothing gave it a stock at once.
bool isMadeByMovements(Database molven, const QString& reference) {
    static const QStringList givers{stock_rebuild::Deed, demo::Deed};
    bool isNew = false, isGiven = false;
    Journal::read(molven, JournalKeys::of(reference), strjournal.jou_tab == strarticle.name, [&](const Record& entry) {
        const QString how = entry[strjournal.jou_gen], values = entry[strjournal.jou_val];
        if (how == u"C") isNew = true;
        const bool isGift = values.contains(u"\"art_stk\"") && givers.contains(entry[strjournal.jou_act]);
        if (how == u"R" || (how == u"M" && (values.contains(u"\"art_aig\"") || isGift))) isGiven = true;
    });
    return isNew && !isGiven;
}

/// What movements and documents leave of each article.
Quantities stocksLeft(references::Files& files, const Session& session) {
    const auto& m = strmvtstk;
    Quantities stocks;
    for (const DataFile file : {DataFile::Molven, DataFile::Stocks})
        for (const auto& [kind, sign] : {std::pair(movement::Entry, 1), std::pair(movement::Exit, -1)})
            add(stocks, files[file].sumBy(m, m.ref_stk, m.qte_stk, m.eta_stk == kind), sign);
    takeSold(files[DataFile::Vente], stocks);
    takeSold(files[DataFile::Historic], stocks);
    takeLines(files[DataFile::Ostrane], strfacl, stocks);
    const OtherFolders others(session);
    for (const Database& file : others.files()) takeSold(file, stocks);
    return stocks;
}

} // namespace

void checkMovements(references::Files& files, const Session& session, Faults& faults) {
    Database molven = files[DataFile::Molven];
    for (const DataFile file : {DataFile::Molven, DataFile::Stocks})
        for (const Record& movement : files[file].select(strmvtstk))
            if (const QString text = faultOf(molven, movement); !text.isEmpty())
                faults.append({catalogueEntry(file).name, movement[strmvtstk.ref_stk], text, &kind::Values});
    const Quantities left = stocksLeft(files, session);
    const auto held = molven.valuesBy(strarticle, strarticle.art_ref, strarticle.art_stk,
                                      strarticle.art_aig == follow_up::ByMovements);
    for (auto article = held.begin(); article != held.end(); ++article) {
        const Decimal stock = Decimal::fromText(article.value()), expected = left.value(article.key().toUpper());
        if (stock == expected || !isMadeByMovements(molven, article.key())) continue;
        faults.append({MovementsFile,
                       article.key(),
                       QStringLiteral("art_stk = %1 pour %2 d'après les mouvements et les documents")
                           .arg(shown(stock), shown(expected)),
                       &kind::Movements,
                       {molven.path(), &strarticle, article.key()}});
    }
}

} // namespace molven::check
