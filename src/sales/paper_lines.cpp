#include "sales/paper_lines.h"

#include "data/format.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "sales/documents.h"
#include "sales/lines.h"

namespace molven::papers {

Decimal LineKnowledge::vatRate(const QString& code) {
    if (!rates_.contains(code)) rates_.insert(code, parameters::vatRate(book_.molven, code));
    return rates_[code];
}

QString LineKnowledge::english(const QString& reference) {
    if (!english_.contains(reference)) {
        const auto article = articles::find(book_.molven, reference);
        english_.insert(reference, article ? article->value(strarticle.art_ang).trimmed() : QString());
    }
    return english_[reference];
}

QString LineKnowledge::noteTitle(const QString& number) {
    if (number.isEmpty() || book_.kind().file != DataFile::Vente) return {};
    if (!notes_.contains(number)) {
        QString title = QStringLiteral("Bon de livraison n° ") + number;
        for (Database file : {book_.vente, book_.historic})
            if (const auto note = file.find(strlive, strlive.fac_no == number)) {
                title += QStringLiteral(" du ") + note->value(strlive.fac_datf);
                if (const QString voucher = note->value(strlive.fac_btr).trimmed(); !voucher.isEmpty())
                    title += QStringLiteral(", votre bon ") + voucher;
                break;
            }
        notes_.insert(number, title);
    }
    return notes_[number];
}

bool LineWriter::hasDiscounts(const Recordset& lines) const {
    for (const Record& line : lines)
        if (!line[kind_.lines.fac_remx].isZero()) return true;
    return false;
}

void LineWriter::write(PaperDocument& paper, const Recordset& lines) const {
    const bool withDiscounts = hasPrices && hasDiscounts(lines);
    paper.columns = columns(withDiscounts);
    paper.carriedColumn = static_cast<int>(paper.columns.size()) - (hasPrices ? 2 : 1);
    paper.carriedPattern = hasPrices ? MoneyPattern : QStringLiteral("### ##0");
    for (const Record& line : lines) paper.lines.append(ofRecord(line, withDiscounts));
}

QList<DocumentColumn> LineWriter::columns(bool withDiscounts) const {
    QList<DocumentColumn> all;
    if (!kind_.hasUnits)
        all = {{QStringLiteral("Référence"), 1240}};
    else if (style_.supplierFirst)
        all = {{QStringLiteral("Réf. fournisseur"), 1500}, {QStringLiteral("N° de série"), 1300}};
    else
        all = {{QStringLiteral("Immat."), 790}, {QStringLiteral("Référence"), 1240}};
    all.append({QStringLiteral("Désignation")});
    if (kind_.hasUnits) all.append({QStringLiteral("Péremption"), 880});
    all.append({QStringLiteral("Qté"), 430, true});
    if (!hasPrices) return all;
    all.append({QStringLiteral("P.U. HT"), 900, true});
    if (withDiscounts) {
        all.append({QStringLiteral("Rem. %"), 600, true});
        all.append({QStringLiteral("Net HT"), 880, true});
    }
    all.append({QStringLiteral("Montant HT"), 1050, true});
    all.append({QStringLiteral("TVA"), 400, true});
    return all;
}

/// What names a line's article and unit, before its designation; a text has neither.
QStringList LineWriter::references(const Record& line) const {
    const DocumentLines& l = kind_.lines;
    const QString own = document_lines::isText(l, line) ? QString() : QString(line[l.fac_ref]);
    if (!kind_.hasUnits) return {own};
    if (!style_.supplierFirst) return {line[l.fac_imm], own};
    return {line[l.fac_fref].isEmpty() ? own : QString(line[l.fac_fref]), line[l.fac_fimm]};
}

DocumentLine LineWriter::ofRecord(const Record& line, bool withDiscounts) const {
    const DocumentLines& l = kind_.lines;
    DocumentLine paper;
    paper.group = known_.noteTitle(line[l.fac_nbl]);
    const bool isText = document_lines::isText(l, line);
    paper.cells = references(line) + QStringList{line[l.fac_li1]};
    if (kind_.hasUnits) paper.cells.append(line[l.fac_dpr]);
    if (!isText) paper.cells.append(shown(line[l.fac_qte]));
    for (const Label* further : {&l.fac_li2, &l.fac_li3})
        if (const QString text = line[*further].trimmed(); !text.isEmpty()) paper.under.append(text);
    if (isText) return paper;
    if (hasEnglish)
        if (const QString english = known_.english(line[l.fac_ref]); !english.isEmpty()) paper.under.append(english);
    if (hasPrices) paper.cells += priceCells(line, withDiscounts);
    paper.details = details(line);
    if (style_.hasBars) paper.bars = bars(line);
    paper.carried = hasPrices ? line[l.fac_ht] : line[l.fac_qte];
    return paper;
}

/// Unit prices are stated without VAT; one kept with VAT is converted to the cent, and the line's total is the one
/// kept.
QStringList LineWriter::priceCells(const Record& line, bool withDiscounts) const {
    const DocumentLines& l = kind_.lines;
    const bool withVat = !line[l.fac_tar].startsWith(u'H');
    const Decimal factor = withVat ? Decimal(1) + known_.vatRate(line[l.fac_tva]) / Decimal(100) : Decimal(1);
    const auto money = [&factor](const Decimal& price) { return format((price / factor).rounded(2), MoneyPattern); };
    QStringList cells{money(line[l.fac_px])};
    if (withDiscounts) {
        cells.append(line[l.fac_remx].isZero() ? QString() : format(line[l.fac_remx], QStringLiteral("##0.00")));
        cells.append(money(line[l.fac_pv]));
    }
    cells.append(format(line[l.fac_ht], MoneyPattern));
    cells.append(line[l.fac_tva]);
    return cells;
}

QStringList LineWriter::details(const Record& line) const {
    const DocumentLines& l = kind_.lines;
    QStringList details;
    const auto add = [&details](const char* caption, const QString& value) {
        if (!value.trimmed().isEmpty()) details.append(QString::fromUtf8(caption) + value.trimmed());
    };
    if (style_.supplierFirst) {
        add("Immat. : ", line[l.fac_imm]);
        add("Réf. : ", line[l.fac_ref]);
    }
    add("", line[l.fac_id1]);
    add("", line[l.fac_id2]);
    if (!style_.supplierFirst) {
        add("N° de série fournisseur : ", line[l.fac_fimm]);
        add("Réf. fournisseur : ", line[l.fac_fref]);
    }
    if (style_.showsSterilisation) add("Stérilisation : ", QStringList{line[l.fac_ste], line[l.fac_dst]}.join(u' '));
    add("Code LPP/TIPS : ", line[l.fac_tip]);
    add("N° d'homologation : ", line[l.fac_nho]);
    if (hasPrices && !line[l.fac_tar].startsWith(u'H')) add("P.U. TTC : ", format(line[l.fac_px], MoneyPattern));
    add("Repris du document n° ", line[l.fac_ori]);
    return details;
}

QList<PaperFact> LineWriter::bars(const Record& line) const {
    const DocumentLines& l = kind_.lines;
    const QString unit = line[l.fac_imm], reimbursement = line[l.fac_tip];
    if (unit.isEmpty() && reimbursement.isEmpty()) return {};
    return {{QStringLiteral("Immat. ") + unit, unit}, {QStringLiteral("LPP/TIPS ") + reimbursement, reimbursement}};
}

} // namespace molven::papers
