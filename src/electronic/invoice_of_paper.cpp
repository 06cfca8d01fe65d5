#include "electronic/invoice_of_paper.h"

#include "data/dates.h"
#include "data/require.h"
#include "electronic/amount_rules.h"
#include "electronic/line_of_paper.h"
#include "electronic/parties_of_paper.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/seller.h"
#include "sales/document_amounts.h"
#include "sales/numbering.h"
#include "sales/totals.h"

#include <algorithm>

namespace molven::electronic {

bool hasElectronicForm(const DocumentKind& kind) { return &kind.headers == &strface && !kind.isProforma(); }

namespace {

const auto& h = strface;
const QString Discount = QStringLiteral("95"); ///< UNTDID 5189

class Maker {
public:
    Maker(SalesBook& book, const papers::Paper& paper, const PaperDocument& page)
        : book_(book),
          paper_(paper),
          page_(page),
          header_(paper.header),
          identity_(seller::read(book.molven)),
          client_(parties::findClient(book.molven, header_[h.fac_clt]).value_or(Record(strclient))),
          parties_(identity_, client_),
          sign_(paper.kind->isCredit ? -1 : 1),
          amounts_(amountsOf(book.molven, paper.file, *paper.kind, header_)) {}

    Invoice make() {
        parties_.check();
        writeHead();
        writeLines();
        writeAdjustments();
        writeVat();
        writeTotals();
        writePayment();
        writeNotes();
        if (const QStringList broken = brokenRules(made_); !broken.isEmpty())
            throw Refusal(QStringLiteral("%1 %2 : les montants ne suivent pas la norme (%3)")
                              .arg(paper_.kind->shownLabel, made_.number, broken.join(QStringLiteral(", "))));
        return made_;
    }

private:
    void writeHead();
    void writeLines();
    void writeAdjustments();
    void adjust(bool isCharge, const Decimal& amount, const char* reason, const Taxation& tax);
    void writeVat();
    void writeTotals();
    void writePayment();
    void writeNotes();

    SalesBook& book_;
    const papers::Paper& paper_;
    const PaperDocument& page_;
    const Record& header_;
    const Record identity_, client_;
    const Parties parties_;
    const Decimal sign_; ///< a credit note states above zero what the books hold below
    const DocumentAmounts amounts_;
    Invoice made_;
};

void Maker::writeHead() {
    made_.type = paper_.kind->isCredit ? Invoice::CreditNote : Invoice::Commercial;
    made_.number = page_.number;
    made_.date = made_.delivered = dateFromText(page_.date);
    made_.currency = header_[h.fac_mon];
    require(made_.currency.size() == 3, QStringLiteral("Monnaie du document : code ISO de trois lettres obligatoire"),
            h.fac_mon);
    made_.service = client_[strclient.clt_svc].trimmed();
    made_.order = header_[h.fac_refc].trimmed();
    made_.seller = parties_.seller();
    made_.buyer = parties_.buyer(page_.address);
    made_.delivery = parties_.delivery(page_.delivery.isEmpty() ? page_.address : page_.delivery, made_.buyer.name);
}

/// A text belongs to the line above it; before the first one, to the whole invoice.
void Maker::writeLines() {
    const DocumentLines& table = paper_.kind->lines;
    const LineMaker maker(book_, parties_, sign_);
    QStringList deliveries, sales;
    const auto note = [](QStringList& list, const QString& number) {
        if (!number.isEmpty() && !list.contains(number)) list.append(number);
    };
    Database file = paper_.file;
    for (const Record& line : file.select(table, numbering::linesOf(table, header_[h.fac_aa], made_.number),
                                          Order{table.fac_no, table.fac_lg})) {
        if (const QStringList text = LineMaker::textOf(line); !text.isEmpty()) {
            if (made_.lines.isEmpty())
                made_.notes.append({{}, text.join(u' ')});
            else
                made_.lines.last().notes += text;
            continue;
        }
        made_.lines.append(maker.line(line));
        note(deliveries, line[table.fac_nbl]);
        note(sales, line[table.fac_ori]);
    }
    require(!made_.lines.isEmpty(), QStringLiteral("%1 %2 : aucune ligne").arg(page_.kind, made_.number), h.fac_no);
    made_.notesOfDelivery = deliveries.join(QStringLiteral(", "));
    if (sales.isEmpty()) return;
    made_.preceding = sales.first();
    if (sales.size() > 1)
        made_.notes.append({{}, QStringLiteral("Documents d'origine : ") + sales.join(QStringLiteral(", "))});
}

void Maker::adjust(bool isCharge, const Decimal& amount, const char* reason, const Taxation& tax) {
    const Decimal stated = amount * sign_;
    if (stated.isZero()) return;
    const bool turns = stated < Decimal(); // what is taken back of a charge is an allowance, and the other way round
    const bool isAllowance = isCharge == turns;
    made_.adjustments.append(
        {!isAllowance, turns ? -stated : stated, QString::fromUtf8(reason), isAllowance ? Discount : QString(), tax});
}

/// Each rate has its part of the discounts; the last one takes what rounding leaves, so that their sum is the page's.
void Maker::writeAdjustments() {
    Decimal discountLeft = amounts_.discount;
    for (qsizetype i = 0; i < amounts_.vat.size(); ++i) {
        const DocumentAmounts::Vat& vat = amounts_.vat[i];
        const Taxation tax = parties_.taxation(vat.rate);
        const Decimal carriage = vat.code == totals::CarriageVat ? amounts_.carriage : Decimal();
        const Decimal off = vat.linesBase - (vat.base - carriage);
        const bool isLast = i + 1 == amounts_.vat.size();
        const Decimal discount = header_[h.fac_esc].isZero() ? off
                                 : isLast                    ? discountLeft
                                          : (vat.linesBase * header_[h.fac_rem] / Decimal(100)).rounded(2);
        discountLeft -= discount;
        adjust(false, discount, "Remise", tax);
        adjust(false, off - discount, "Escompte", tax);
        adjust(true, carriage, "Port", tax);
    }
    adjust(true, amounts_.exempt, "Montant exonéré de TVA", parties_.taxation(0));
}

void Maker::writeVat() {
    const auto add = [this](const Taxation& tax, const Decimal& base, const Decimal& amount) {
        const auto same =
            std::find_if(made_.vat.begin(), made_.vat.end(), [&tax](const Vat& one) { return one.tax == tax; });
        if (same == made_.vat.end()) return made_.vat.append({tax, base * sign_, amount * sign_});
        same->base += base * sign_;
        same->amount += amount * sign_;
    };
    for (const DocumentAmounts::Vat& vat : amounts_.vat) add(parties_.taxation(vat.rate), vat.base, vat.amount);
    if (!amounts_.exempt.isZero()) add(parties_.taxation(0), amounts_.exempt, 0);
    if (made_.vat.isEmpty()) add(made_.lines.first().tax, 0, 0); // nothing but free goods
    for (const Vat& vat : made_.vat) parties_.checkReason(vat.tax);
}

void Maker::writeTotals() {
    made_.linesTotal = amounts_.lines * sign_;
    for (const Adjustment& one : made_.adjustments) (one.isCharge ? made_.charges : made_.allowances) += one.amount;
    made_.base = header_[h.fac_ht] * sign_;
    made_.vatTotal = (header_[h.fac_ttc] - header_[h.fac_ht]) * sign_;
    made_.total = header_[h.fac_ttc] * sign_;
    made_.paid = header_[h.fac_acpt] * sign_;
    made_.toPay = header_[h.fac_ffa] * sign_;
}

void Maker::writePayment() {
    const auto& e = stremetteur;
    const auto mode = parameters::paymentMode(book_.molven, header_[h.fac_rglt]);
    const QString words = mode ? mode->value(strparrgt.lib_rglt).trimmed() : QString();
    if (paper_.kind->isCredit) {
        made_.terms = QStringLiteral("Avoir à déduire d'un prochain règlement");
        return;
    }
    made_.iban = identity_[e.emt_iban];
    made_.bic = identity_[e.emt_bic];
    made_.meansCode = made_.iban.isEmpty()       ? QStringLiteral("1")
                      : made_.currency == u"EUR" ? QStringLiteral("58")
                                                 : QStringLiteral("30");
    made_.meansText = words;
    made_.due = dateFromText(header_[h.fac_ech]);
    made_.terms = words.isEmpty() ? QStringLiteral("A réception de la facture") : words;
}

/// The texts of the page, each under what the law asks it for.
void Maker::writeNotes() {
    const auto& e = stremetteur;
    const auto subjectOf = [&](const QString& text) {
        if (text == papers::RecoveryIndemnity) return QStringLiteral("PMT");
        if (text == identity_[e.emt_pen].trimmed()) return QStringLiteral("PMD");
        return text == identity_[e.emt_esc].trimmed() ? QStringLiteral("AAB") : QString();
    };
    const auto add = [this](const QString& subject, const QString& text) {
        if (!text.isEmpty()) made_.notes.append({subject, text});
    };
    add({}, page_.message);
    for (const PaperFact& fact : page_.facts)
        if (fact.caption == u"Votre bon") add({}, QStringLiteral("Bon : ") + fact.value);
    for (const QString& text : page_.texts) add(subjectOf(text), text);
    for (const QString& text : page_.seller.footer) add(QStringLiteral("REG"), text);
}

} // namespace

Invoice invoiceOf(SalesBook& book, const papers::Paper& paper, const PaperDocument& page) {
    return Maker(book, paper, page).make();
}

} // namespace molven::electronic
