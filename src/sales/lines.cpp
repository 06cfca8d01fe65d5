#include "sales/lines.h"

#include "data/format.h"
#include "data/require.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/prices.h"
#include "sales/document_locks.h"
#include "sales/documents.h"
#include "sales/integration.h"
#include "sales/numbering.h"
#include "sales/unit_moves.h"
#include "sales/unit_rules.h"
#include "stock/depot_counts.h"

#include <functional>

namespace molven::document_lines {

namespace {

Decimal direction(const DocumentKind& kind) { return kind.isCredit ? -1 : 1; }

bool movesStock(const Record& article) { return article[strarticle.art_aig] == follow_up::ByMovements; }

void priceLine(SalesBook& book, Record& line, bool withoutVat) {
    const DocumentLines& table = book.kind().lines;
    const Record& read = line;
    line[table.fac_pv] = pricing::net(read[table.fac_px], read[table.fac_remx]);
    const pricing::LineTotal total = pricing::lineTotal(read[table.fac_qte], read[table.fac_pv], withoutVat,
                                                        parameters::vatRate(book.molven, read[table.fac_tva]));
    line[table.fac_ht] = total.ht;
    line[table.fac_ttc] = total.ttc;
}

} // namespace

namespace {

/// Up to this date key, "yyyymmdd", a document of the second book bears the LPP code of its articles whatever their
/// category.
const QString LastOfLppAlone = QStringLiteral("20040300");

bool bearsLppAlone(const DocumentKind& kind, const Record& header) {
    return kind.isSecondBook() && header[kind.headers.tri_datf] <= LastOfLppAlone;
}

bool isFollowed(const Record& article) { return article[strarticle.art_aig] == follow_up::ByUnit; }

} // namespace

Draft preset(SalesBook& book, const Record& header, const QString& reference) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    require(!reference.trimmed().isEmpty(), "Référence obligatoire", table.fac_ref);
    const auto found = articles::find(book.molven, reference);
    require(found && (book.kind().takesTrackedArticles || !isFollowed(*found)), "Référence inconnue", table.fac_ref);
    const Record& article = *found;
    const Record client = parties::findClient(book.molven, header[headers.fac_clt]).value_or(Record(strclient));

    Draft draft(table);
    Record& line = draft.line;
    draft.tracked = book.kind().hasUnits && isFollowed(article);
    draft.isText = article[strarticle.art_aig] == follow_up::TextLine;
    require(book.kind().isPriced || draft.tracked || draft.isText, "Cet article ni suivi, ni texte", table.fac_ref);
    const pricing::Preset price =
        pricing::preset(book.molven, article, client, book.rules().printsThirdLabel(), book.kind().isConsignment);
    line[table.fac_ref] = article[strarticle.art_ref];
    line[table.fac_li1] = price.designation.value(0);
    line[table.fac_li2] = price.designation.value(1);
    line[table.fac_li3] = price.designation.value(2);
    line[table.fac_clt] = header[headers.fac_clt];
    line[table.fac_dep] = header[book.kind().depot];
    line[table.fac_cpt] = documents::Open;
    if (!book.kind().isPriced) {
        if (!draft.isText) line[table.fac_tip] = price.reimbursement;
        return draft;
    }
    line[table.fac_imp] = article[strarticle.art_cpt];
    if (draft.isText) return draft;
    draft.withoutVat = price.withoutVat;
    draft.priceMessage = price.message();
    line[table.fac_tva] = price.vatCode;
    line[table.fac_tar] = article[strarticle.art_tar];
    line[table.fac_px] = price.price;
    line[table.fac_remx] = price.discount;
    line[table.fac_pa] = price.purchasePrice;
    line[table.fac_tip] =
        bearsLppAlone(book.kind(), header) ? pricing::lppOf(book.molven, article) : price.reimbursement;
    draft.reimbursements = price.reimbursements;
    line[table.fac_nho] = price.approval;
    line[table.fac_qte] = 1;
    return draft;
}

bool isText(const DocumentLines& table, const Record& line) { return line[table.fac_qte].isZero(); }

void setUnit(SalesBook& book, Draft& draft, const Record& unit) {
    const DocumentLines& table = book.kind().lines;
    Record& line = draft.line;
    const QString type = unit[strproduit.pro_typ];
    line[table.fac_imm] = unit[strproduit.imm_art];
    line[table.fac_typ] = type;
    line[table.fac_ste] = unit[strproduit.num_ste];
    line[table.fac_dst] = unit[strproduit.dat_ste];
    line[table.fac_dpr] = unit[strproduit.dat_per];
    if (line[table.fac_nho] != pricing::NotSubject) line[table.fac_nho] = unit[strproduit.pro_nho];
    line[table.fac_fimm] = unit[strproduit.fou_imm];
    line[table.fac_fref] = unit[strproduit.fou_ref];
    line[table.fac_qte] = 1;
    if (book.kind().isCredit) {
        line[table.fac_ori] = unit[strproduit.num_vte];
        line[table.fac_opat] = unit[strproduit.reg_pat];
        line[table.fac_oclt] = unit[strproduit.reg_clt];
        line[table.fac_odat] = unit[strproduit.reg_dat];
    }
    if (type == u"G") {
        line[table.fac_id1] =
            QStringLiteral("N° Donneur : %1  N° Tissu : %2").arg(unit[strproduit.pee_cer], unit[strproduit.ino_cer]);
        line[table.fac_id2] = QStringLiteral("Prélvt : ") + unit[strproduit.reg_art];
    } else if (type == u"F") {
        line[table.fac_id1] =
            QStringLiteral("N° Lot : %1  N° pièce : %2").arg(unit[strproduit.lot_art], unit[strproduit.pie_art]);
        line[table.fac_id2] = QStringLiteral("Regroupement : ") + unit[strproduit.reg_art];
    } else {
        line[table.fac_id1] = QStringLiteral("N° Lot : ") + unit[strproduit.lot_art];
    }
}

Draft ofUnit(SalesBook& book, const Record& header, const Record& unit) {
    Draft draft = preset(book, header, unit[strproduit.ref_art]);
    setUnit(book, draft, unit);
    return draft;
}

QList<Draft> ofUnits(SalesBook& book, const Record& header, const QList<Record>& units) {
    const Reading together(book.workspace);
    QStringList references;
    for (const Record& unit : units) references.append(unit[strproduit.ref_art]);
    references.removeDuplicates();
    articles::foresee(book.molven, references);
    QList<Record> articlesOfUnits;
    for (const QString& reference : references)
        if (const auto article = articles::find(book.molven, reference)) articlesOfUnits.append(*article);
    if (const auto client = parties::findClient(book.molven, header[book.kind().headers.fac_clt]))
        pricing::foresee(book.molven, articlesOfUnits, *client);
    QHash<QString, Draft> presets;
    for (const QString& reference : references) presets.insert(reference, preset(book, header, reference));
    QList<Draft> drafts;
    for (const Record& unit : units) {
        drafts.append(*presets.constFind(unit[strproduit.ref_art]));
        setUnit(book, drafts.last(), unit);
    }
    return drafts;
}

void takeFromStock(SalesBook& book, const QString& reference, const Decimal& quantity) {
    if (!book.kind().movesStock) return;
    book.molven.addTo(strarticle, strarticle.art_stk, -quantity,
                      strarticle.art_ref == reference.trimmed() && strarticle.art_aig == follow_up::ByMovements);
}

QString stockWarning(SalesBook& book, const Draft& draft) {
    const DocumentLines& table = book.kind().lines;
    const Record& line = draft.line;
    if (draft.tracked || draft.isText || book.kind().isCredit || !book.kind().movesStock) return {};
    const auto article = articles::find(book.molven, line[table.fac_ref]);
    if (!article || !movesStock(*article)) return {};
    const Decimal stock = (*article)[strarticle.art_stk];
    if (!(line[table.fac_qte] > stock)) return {};
    return QStringLiteral("ATTENTION ... Stock insuffisant ... stock dispo : ") + shown(stock);
}

QStringList reimbursementsOf(SalesBook& book, const QString& reference) {
    const auto article = articles::find(book.molven, reference);
    return article ? pricing::reimbursements(book.molven, *article) : QStringList();
}

namespace {

/// What the boxes of a line can show: "####0.00" and "#####0.00".
void requireBounds(SalesBook& book, const Record& line) {
    const DocumentLines& table = book.kind().lines;
    const Decimal quantity = line[table.fac_qte], price = line[table.fac_px], discount = line[table.fac_remx];
    require(quantity > Decimal(0) && quantity < Decimal(100'000) && quantity == quantity.rounded(2),
            "Quantité incorrecte", table.fac_qte);
    require(isPrice(price), "Prix incorrect", table.fac_px);
    require(discount >= Decimal(0) && discount <= Decimal(100), "Remise incorrecte", table.fac_remx);
}

void requireReimbursement(SalesBook& book, const QString& code, const QStringList& choices) {
    require(choices.isEmpty() || choices.contains(code, Qt::CaseInsensitive), "Ce code n'existe pas",
            book.kind().lines.fac_tip);
}

/// The line of a document under its number.
Record numbered(SalesBook& book, const Record& header, const Draft& draft, const QString& number) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    Record line = draft.line;
    line[table.fac_aa] = header[headers.fac_aa];
    line[table.fac_no] = header[headers.fac_no];
    line[table.fac_lg] = number;
    return line;
}

/// The same with its amounts.
Record priced(SalesBook& book, const Record& header, const Draft& draft, const QString& number) {
    const DocumentLines& table = book.kind().lines;
    Record line = numbered(book, header, draft, number);
    if (draft.isText || !book.kind().isPriced) return line;
    requireBounds(book, line);
    const Record& read = line;
    requireReimbursement(book, read[table.fac_tip], draft.reimbursements);
    line[table.fac_qte] = read[table.fac_qte] * direction(book.kind());
    priceLine(book, line, draft.withoutVat);
    return line;
}

/// Writes lines under their numbers and moves what they move: each its unit, or the stock of its article.
void write(SalesBook& book, const Record& header, const QList<Draft>& drafts, const QStringList& numbers,
           const QList<std::optional<Record>>& units) {
    const DocumentLines& table = book.kind().lines;
    QList<Record> lines;
    for (qsizetype i = 0; i < drafts.size(); ++i) lines.append(priced(book, header, drafts[i], numbers[i]));
    book.vente.insert(lines);
    QList<unit_moves::Changed> moved;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const Record& line = lines[i];
        if (units[i])
            moved.append({*units[i], unit_moves::moved(book, header, line, *units[i])});
        else
            takeFromStock(book, line[table.fac_ref], line[table.fac_qte]);
    }
    unit_moves::store(book, moved);
}

/// The units of lines that are about to be written, as stored: free, each for one line.
QList<std::optional<Record>> freeUnits(SalesBook& book, const Record& header, const QList<Draft>& drafts) {
    QStringList numbers;
    QList<qsizetype> places;
    for (qsizetype i = 0; i < drafts.size(); ++i) {
        if (!drafts[i].tracked) continue;
        numbers.append(drafts[i].line.value(book.kind().lines.fac_imm));
        places.append(i);
    }
    const QList<Record> units = unit_rules::checkAll(book, header, numbers, [&](qsizetype place, const Record& unit) {
        return unit_moves::moved(book, header, drafts[places[place]].line, unit);
    });
    QList<std::optional<Record>> found(drafts.size());
    for (qsizetype i = 0; i < units.size(); ++i) found[places[i]] = units[i];
    return found;
}

} // namespace

namespace {

/// Numbers for so many new lines: those after the last, or from a free one on.
QStringList freeNumbers(SalesBook& book, const Record& header, qsizetype count, int from) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    const int next = numbering::nextLine(book.vente, table, header[headers.fac_aa], header[headers.fac_no]);
    QStringList numbers;
    for (int number = from > 0 ? from : next; numbers.size() < count; ++number) {
        numbering::requireRoom(number);
        const Criterion taken = documents::linesOf(book, header) && table.fac_lg == numbering::lineKey(number);
        require(number >= next || book.vente.count(table, taken) == 0, "Cette ligne existe déjà", table.fac_lg);
        numbers.append(numbering::lineKey(number));
    }
    return numbers;
}

/// The line of the document that the user saw, as it is stored. Throws ChangedElsewhere when it holds something else.
Recordset storedLine(SalesBook& book, const Record& header, const Record& asRead) {
    const DocumentLines& table = book.kind().lines;
    const QString number = asRead[table.fac_lg];
    require(!number.isEmpty(), "N° ligne obligatoire", table.fac_lg);
    Recordset line = book.vente.select(table, documents::linesOf(book, header) && table.fac_lg == number);
    if (line.isEmpty())
        throw ChangedElsewhere(QStringLiteral("La ligne %1 a été supprimée par un autre poste").arg(number),
                               table.fac_lg.name);
    if (line.record() == asRead) return line;
    const QStringList now{line[table.fac_ref], line[table.fac_imm], line[table.fac_li1]};
    throw ChangedElsewhere(
        QStringLiteral("La ligne %1 a été modifiée par un autre poste : %2").arg(number, now.join(u' ').simplified()),
        table.fac_lg.name);
}

/// Makes room for a line before the stored one.
void pushDown(SalesBook& book, const Record& header, const QString& from) {
    const DocumentLines& table = book.kind().lines;
    Recordset lines = documents::lines(book, header);
    for (lines.moveLast(); lines.count() > 0; lines.movePrevious()) {
        const QString key = lines[table.fac_lg];
        if (key < from) break;
        lines.edit();
        lines[table.fac_lg] = numbering::lineKey(key.toInt() + 1);
        lines.update();
        if (lines.position() == 0) break;
    }
}

} // namespace

namespace {

/// Writes so many lines, each under its number.
using Writing = std::function<void(const Record& header, const QStringList& numbers)>;

QStringList vatCodesOf(const DocumentLines& table, const QList<Draft>& drafts) {
    QStringList codes;
    for (const Draft& draft : drafts) codes.append(draft.line[table.fac_tva]);
    codes.removeDuplicates();
    return codes;
}

void writeAll(SalesBook& book, const Record& asRead, const QList<Draft>& drafts, int from, const Locks& locks,
              const Writing& writeThem) {
    const DocumentHeaders& headers = book.kind().headers;
    const DocumentLines& table = book.kind().lines;
    Transaction::run(book.workspace, QStringLiteral("Ajout de lignes"), locks, [&] {
        numbering::foreseeLines(book.vente, book.kind().lines, asRead[headers.fac_aa], asRead[headers.fac_no]);
        parameters::foreseeVatRates(book.molven, vatCodesOf(table, drafts));
        const Record header = documents::requireOpen(book, asRead);
        const QStringList numbers = freeNumbers(book, header, drafts.size(), from);
        numbering::addHiddenLine(book.vente, table, header[headers.fac_aa], header[headers.fac_no]);
        writeThem(header, numbers);
        documents::refreshTotals(book, header);
    });
}

void add(SalesBook& book, const Record& asRead, const QList<Draft>& drafts, int from, const Locks& locks) {
    writeAll(book, asRead, drafts, from, locks, [&](const Record& header, const QStringList& numbers) {
        write(book, header, drafts, numbers, freeUnits(book, header, drafts));
    });
}

} // namespace

void add(SalesBook& book, const Record& asRead, const QList<Draft>& drafts, int from) {
    add(book, asRead, drafts, from, document_locks::ofLines(book, asRead, drafts));
}

void addToNew(SalesBook& book, const Record& made, const QList<Draft>& drafts) {
    QList<Record> lines;
    for (const Draft& draft : drafts) lines.append(draft.line);
    add(book, made, drafts, 0, document_locks::ofUnits(book.kind(), lines));
}

void record(SalesBook& book, const Record& asRead, const QList<Draft>& drafts) {
    const Locks locks = document_locks::ofLines(book, asRead, drafts);
    writeAll(book, asRead, drafts, 0, locks, [&](const Record& header, const QStringList& numbers) {
        QList<Record> lines;
        for (qsizetype i = 0; i < drafts.size(); ++i) lines.append(numbered(book, header, drafts[i], numbers[i]));
        book.vente.insert(lines);
    });
}

void insert(SalesBook& book, const Record& asRead, const Draft& draft, const Record& before) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    require(!draft.isText, "impossible d'insérer du texte, il faut l'ajouter", table.fac_ref);
    const Locks locks = document_locks::ofLines(book, asRead, {draft});
    Transaction::run(book.workspace, QStringLiteral("Insertion d'une ligne"), locks, [&] {
        const Record header = documents::requireOpen(book, asRead);
        const QString number = storedLine(book, header, before)[table.fac_lg];
        numbering::requireRoom(numbering::nextLine(book.vente, table, header[headers.fac_aa], header[headers.fac_no]));
        pushDown(book, header, number);
        write(book, header, {draft}, {number}, freeUnits(book, header, {draft}));
        documents::refreshTotals(book, header);
    });
}

namespace {

/// The change of one line, which its caller's transaction has for itself with its unit or its article.
void rewriteLine(SalesBook& book, const Record& header, const Record& line, const Record& asRead) {
    const DocumentLines& table = book.kind().lines;
    Recordset stored = storedLine(book, header, asRead);
    if (isText(table, asRead)) return;
    requireBounds(book, line);
    const QString reference = asRead[table.fac_ref];
    if (line[table.fac_tip] != asRead[table.fac_tip])
        requireReimbursement(book, line[table.fac_tip], reimbursementsOf(book, reference));
    const bool tracked = !asRead[table.fac_imm].isEmpty();
    stored.edit();
    stored[table.fac_px] = line[table.fac_px];
    stored[table.fac_remx] = line[table.fac_remx];
    stored[table.fac_tip] = line[table.fac_tip];
    if (!tracked) stored[table.fac_qte] = line[table.fac_qte] * direction(book.kind());
    priceLine(book, stored.draft(), asRead[table.fac_tar] == u"H");
    const Record written = stored.draft();
    stored.update();
    if (tracked)
        unit_moves::reprice(book, header, written);
    else
        takeFromStock(book, reference, written[table.fac_qte] - asRead[table.fac_qte]);
    documents::requireDownPaymentWithin(book, documents::refreshTotals(book, header));
}

} // namespace

void change(SalesBook& book, const Record& asReadHeader, const Record& line, const Record& asRead) {
    const Locks locks = document_locks::ofStanding(book, asReadHeader, {asRead});
    Transaction::run(book.workspace, QStringLiteral("Modification d'une ligne"), locks,
                     [&] { rewriteLine(book, documents::requireOpen(book, asReadHeader), line, asRead); });
}

void undo(SalesBook& book, const Record& header, const Record& line) {
    const DocumentLines& table = book.kind().lines;
    if (!line[table.fac_imm].isEmpty()) {
        unit_moves::undo(book, header, line);
        depot_counts::release(book.molven, book.kind().mode, header[book.kind().headers.fac_no], line[table.fac_imm]);
        return;
    }
    takeFromStock(book, line[table.fac_ref], -line[table.fac_qte]);
}

void remove(SalesBook& book, const Record& asReadHeader, const Record& asRead) {
    const Locks locks = document_locks::ofStanding(book, asReadHeader, {asRead});
    Transaction::run(book.workspace, QStringLiteral("Suppression d'une ligne"), locks, [&] {
        const Record header = documents::requireOpen(book, asReadHeader);
        Recordset line = storedLine(book, header, asRead);
        undo(book, header, asRead);
        line.remove();
        if (book.kind().isInvoice()) integration::release(book, header, {asRead[book.kind().lines.fac_nbl]});
        documents::requireDownPaymentWithin(book, documents::refreshTotals(book, header));
    });
}

Record copyOf(const Record& line, const DocumentLines& target) {
    Record copy(target);
    copy.copyFrom(line);
    return copy;
}

} // namespace molven::document_lines
