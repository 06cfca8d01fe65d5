#include "sales/lines.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "sales/unit_rules.h"
#include "stock/unit_tables.h"

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

Draft preset(SalesBook& book, const Record& header, const QString& reference) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    if (reference.trimmed().isEmpty()) throw Refusal(QStringLiteral("Référence obligatoire"), table.fac_ref.name);
    const auto found = articles::find(book.molven, reference);
    if (!found) throw Refusal(QStringLiteral("Référence inconnue"), table.fac_ref.name);
    const Record& article = *found;
    const Record client = parties::findClient(book.molven, header[headers.fac_clt]).value_or(Record(strclient));

    Draft draft(table);
    Record& line = draft.line;
    draft.tracked = article[strarticle.art_aig] == follow_up::ByUnit;
    draft.isText = article[strarticle.art_aig] == follow_up::TextLine;
    const pricing::Preset price =
        pricing::preset(book.molven, article, client, book.rules().printsThirdLabel(), book.kind().isConsignment);
    line[table.fac_ref] = article[strarticle.art_ref];
    line[table.fac_li1] = price.designation.value(0);
    line[table.fac_li2] = price.designation.value(1);
    line[table.fac_li3] = price.designation.value(2);
    line[table.fac_clt] = header[headers.fac_clt];
    line[table.fac_dep] = header[headers.fac_dep];
    line[table.fac_cpt] = documents::Open;
    line[table.fac_imp] = article[strarticle.art_cpt];
    if (draft.isText) return draft;
    draft.withoutVat = price.withoutVat;
    draft.priceMessage = price.message();
    line[table.fac_tva] = price.vatCode;
    line[table.fac_tar] = article[strarticle.art_tar];
    line[table.fac_px] = price.price;
    line[table.fac_remx] = price.discount;
    line[table.fac_pa] = price.purchasePrice;
    line[table.fac_tip] = price.reimbursement;
    line[table.fac_nho] = price.approval;
    line[table.fac_qte] = 1;
    return draft;
}

void setUnit(SalesBook& book, Draft& draft, const Record& unit) {
    const DocumentLines& table = book.kind().lines;
    Record& line = draft.line;
    const QString type = unit[strproduit.pro_typ];
    line[table.fac_imm] = unit[strproduit.imm_art];
    line[table.fac_typ] = type;
    line[table.fac_ste] = unit[strproduit.num_ste];
    line[table.fac_dst] = unit[strproduit.dat_ste];
    line[table.fac_dpr] = unit[strproduit.dat_per];
    line[table.fac_nho] = unit[strproduit.pro_nho];
    line[table.fac_fimm] = unit[strproduit.fou_imm];
    line[table.fac_fref] = unit[strproduit.fou_ref];
    line[table.fac_qte] = 1;
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

QString stockWarning(SalesBook& book, const Draft& draft) {
    const DocumentLines& table = book.kind().lines;
    const Record& line = draft.line;
    if (draft.tracked || draft.isText || book.kind().isCredit) return {};
    const auto article = articles::find(book.molven, line[table.fac_ref]);
    if (!article || !movesStock(*article)) return {};
    const Decimal stock = std::as_const(*article)[strarticle.art_stk];
    if (!(line[table.fac_qte] > stock)) return {};
    return QStringLiteral("ATTENTION ... Stock insuffisant ... stock dispo : ") + shown(stock);
}

namespace {

void requireQuantity(SalesBook& book, const Record& line) {
    const Number& quantity = book.kind().lines.fac_qte;
    if (!(line[quantity] > Decimal(0))) throw Refusal(QStringLiteral("Quantité incorrecte"), quantity.name);
}

/// Writes one line under its number and moves what it moves.
void write(SalesBook& book, const Record& header, const Draft& draft, const QString& number) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    Record line = draft.line;
    const Record& read = line;
    if (draft.tracked) unit_rules::check(book, header, read[table.fac_imm]);
    line[table.fac_aa] = header[headers.fac_aa];
    line[table.fac_no] = header[headers.fac_no];
    line[table.fac_lg] = number;
    if (!draft.isText) {
        requireQuantity(book, line);
        line[table.fac_qte] = read[table.fac_qte] * direction(book.kind());
        priceLine(book, line, draft.withoutVat);
    }
    book.vente.insert(line);
    if (draft.tracked) {
        unit_rules::apply(book, header, line);
    } else if (const auto article = articles::find(book.molven, read[table.fac_ref]); article && movesStock(*article)) {
        articles::moveStock(book.molven, read[table.fac_ref], -read[table.fac_qte]);
    }
}

} // namespace

void add(SalesBook& book, const Record& header, const QList<Draft>& drafts, int from) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    const QString year = header[headers.fac_aa];
    const QString number = header[headers.fac_no];
    Transaction transaction(book.workspace, QStringLiteral("Ajout de lignes"));
    documents::requireOpen(book, header);
    if (from > numbering::LastLine) throw Refusal(QStringLiteral("Document plein - ligne non crée"), table.fac_lg.name);
    int next = numbering::nextLine(book.vente, table, year, number);
    if (from > 0 && from < next) throw Refusal(QStringLiteral("Cette ligne existe déjà"), table.fac_lg.name);
    next = std::max(next, from);
    if (next + drafts.size() - 1 > numbering::LastLine)
        throw Refusal(QStringLiteral("Document plein - ligne non crée"), table.fac_lg.name);
    numbering::addHiddenLine(book.vente, table, year, number);
    for (const Draft& draft : drafts) write(book, header, draft, numbering::lineKey(next++));
    documents::refreshTotals(book, header);
    transaction.commit();
}

void insert(SalesBook& book, const Record& header, const Draft& draft, const QString& before) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    if (draft.isText)
        throw Refusal(QStringLiteral("impossible d'insérer du texte, il faut l'ajouter"), table.fac_ref.name);
    Transaction transaction(book.workspace, QStringLiteral("Insertion d'une ligne"));
    documents::requireOpen(book, header);
    numbering::nextLine(book.vente, table, header[headers.fac_aa], header[headers.fac_no]);
    Recordset lines = documents::lines(book, header);
    for (lines.moveLast(); lines.count() > 0; lines.movePrevious()) {
        const QString key = lines[table.fac_lg];
        if (key < before) break;
        lines.edit();
        lines[table.fac_lg] = numbering::lineKey(key.toInt() + 1);
        lines.update();
        if (lines.position() == 0) break;
    }
    write(book, header, draft, before);
    documents::refreshTotals(book, header);
    transaction.commit();
}

namespace {

Recordset storedLine(SalesBook& book, const Record& header, const QString& number) {
    const DocumentLines& table = book.kind().lines;
    const DocumentHeaders& headers = book.kind().headers;
    if (number.isEmpty()) throw Refusal(QStringLiteral("N° ligne obligatoire"), table.fac_lg.name);
    Recordset line =
        book.vente.select(table, numbering::linesOf(table, header[headers.fac_aa], header[headers.fac_no]) &&
                                     table.fac_lg == padded(number, 3));
    if (line.isEmpty()) throw Refusal(QStringLiteral("Cette ligne n'existe pas"), table.fac_lg.name);
    return line;
}

} // namespace

void change(SalesBook& book, const Record& header, const Record& line) {
    const DocumentLines& table = book.kind().lines;
    Transaction transaction(book.workspace, QStringLiteral("Modification d'une ligne"));
    documents::requireOpen(book, header);
    if (!line[table.fac_tva].isEmpty()) requireQuantity(book, line);
    Recordset stored = storedLine(book, header, line[table.fac_lg]);
    const QString unit = stored[table.fac_imm];
    const Decimal before = stored[table.fac_qte];
    stored.edit();
    stored[table.fac_px] = line[table.fac_px];
    stored[table.fac_remx] = line[table.fac_remx];
    if (unit.isEmpty()) stored[table.fac_qte] = line[table.fac_qte] * direction(book.kind());
    priceLine(book, stored.draft(), std::as_const(stored.draft())[table.fac_tar] == u"H");
    const Record written = stored.draft();
    stored.update();
    const auto article = articles::find(book.molven, written[table.fac_ref]);
    if (!unit.isEmpty() && !book.kind().isCredit)
        book.molven.update(strproduit, {{strproduit.pro_vte, written[table.fac_pv].toString()}},
                           Immatriculation::fromText(unit).criterion());
    else if (article && movesStock(*article))
        articles::moveStock(book.molven, written[table.fac_ref], before - written[table.fac_qte]);
    documents::refreshTotals(book, header);
    transaction.commit();
}

void undo(SalesBook& book, const Record& header, const Record& line) {
    const DocumentLines& table = book.kind().lines;
    if (!line[table.fac_imm].isEmpty()) {
        unit_rules::undo(book, header, line);
        return;
    }
    const auto article = articles::find(book.molven, line[table.fac_ref]);
    if (article && movesStock(*article)) articles::moveStock(book.molven, line[table.fac_ref], line[table.fac_qte]);
}

void remove(SalesBook& book, const Record& header, const QString& lineNumber) {
    Transaction transaction(book.workspace, QStringLiteral("Suppression d'une ligne"));
    documents::requireOpen(book, header);
    Recordset line = storedLine(book, header, lineNumber);
    undo(book, header, line.record());
    line.remove();
    documents::refreshTotals(book, header);
    transaction.commit();
}

Record copyOf(const Record& line, const DocumentLines& target) {
    Record copy(target);
    copy.copyFrom(line);
    return copy;
}

} // namespace molven::document_lines
