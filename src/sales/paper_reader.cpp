#include "data/dates.h"
#include "data/format.h"
#include "reference/codes.h"
#include "reference/countries.h"
#include "reference/identifiers.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/seller.h"
#include "sales/document_amounts.h"
#include "sales/documents.h"
#include "sales/numbering.h"
#include "sales/paper_lines.h"
#include "sales/papers.h"
#include "shell/startup.h"

namespace molven::papers {

namespace {

QString grouped(const QString& digits, const QList<int>& groups) {
    QStringList parts;
    qsizetype from = 0;
    for (const int size : groups) {
        parts.append(digits.mid(from, size));
        from += size;
    }
    parts.removeAll(QString());
    return parts.join(u' ');
}

QStringList filled(const QStringList& lines) {
    QStringList kept;
    for (const QString& line : lines)
        if (!line.trimmed().isEmpty()) kept.append(line.trimmed());
    return kept;
}

/// What the law wants under every paper of a company.
QString legalLine(const Record& e) {
    const auto& t = stremetteur;
    const QString capital =
        e[t.emt_cap].isZero()
            ? QString()
            : QStringLiteral("au capital de %1 €").arg(format(e[t.emt_cap], QStringLiteral("### ### ##0")));
    const QString siren = grouped(seller::siren(e), {3, 3, 3});
    const auto after = [](const char* words, const QString& value) {
        return value.isEmpty() ? QString() : QString::fromUtf8(words) + value;
    };
    const QString name = filled({e[t.emt_nom], e[t.emt_jur], capital}).join(u' ');
    const QString register_ =
        e[t.emt_rcs].isEmpty() ? after("SIREN ", siren) : filled({e[t.emt_rcs], siren}).join(u' ');
    return filled({name, register_, after("SIRET ", grouped(e[t.emt_siret], {3, 3, 3, 5})), after("APE ", e[t.emt_ape]),
                   after("N° TVA ", e[t.emt_tva])})
        .join(QStringLiteral(" - "));
}

PaperSeller sellerOf(SalesBook& book, const Record& e) {
    const auto& t = stremetteur;
    PaperSeller seller;
    seller.name = e[t.emt_nom];
    seller.lines = seller::addressLines(e);
    const auto add = [&seller](const char* words, const QString& value) {
        if (!value.isEmpty()) seller.lines.append(QString::fromUtf8(words) + value);
    };
    add("Tél. : ", e[t.emt_tel]);
    add("Télécopie : ", e[t.emt_fax]);
    add("", e[t.emt_mail]);
    add("", e[t.emt_web]);
    seller.logo = QImage(startup::logoFile(book.session(), book.session().spe_cod));
    seller.footer = filled(book.session().spe_pied.split(u'\n') + QStringList{legalLine(e)});
    return seller;
}

} // namespace

struct Reader::Known {
    Known(SalesBook& opened, const Style& wanted)
        : book(opened),
          style(wanted),
          identity(seller::read(book.molven)),
          seller(sellerOf(book, identity)),
          lines(book) {
        for (const Record& text : book.molven.select(strpartxt, {}, Order{strpartxt.txt_cde}))
            texts.append(text[strpartxt.txt_lib].trimmed());
    }

    PaperDocument read(const Paper& paper);

private:
    const Record& clientOf(const QString& code);
    QString words(const Text& field, const Record& header);
    bool isForeign(const Record& client) const;
    void writeParties(PaperDocument& paper, const Paper& from, const Record& client);
    void writeFacts(PaperDocument& paper, const Paper& from, const Record& client);
    void writeEnd(PaperDocument& paper, const Paper& from);
    void writeTotals(PaperDocument& paper, const Paper& from, const DocumentAmounts& amounts);
    void writePayment(PaperDocument& paper, const Paper& from, const DocumentAmounts& amounts);

    SalesBook& book;
    const Style style;
    const Record identity;
    const PaperSeller seller;
    LineKnowledge lines;
    QStringList texts; ///< of invoices
    QHash<QString, Record> clients;
    QHash<QString, QString> wordsOf; ///< by kind and code
};

const Record& Reader::Known::clientOf(const QString& code) {
    if (!clients.contains(code))
        clients.insert(code, parties::findClient(book.molven, code).value_or(Record(strclient)));
    return *clients.constFind(code);
}

/// The words of a code, the code itself when its record is gone.
QString Reader::Known::words(const Text& field, const Record& header) {
    const QString code = header[field];
    const CodeKind* kind = codes::kindOf(field, header);
    if (code.isEmpty() || !kind || !kind->words) return code;
    const QString key = field.name + u' ' + code;
    if (!wordsOf.contains(key)) {
        const auto found = codes::find(book.molven, *kind, code);
        wordsOf.insert(key, found ? QString((*found)[*kind->words]) : code);
    }
    return wordsOf[key];
}

bool Reader::Known::isForeign(const Record& client) const {
    const QString country = client[strclient.clt_pays];
    return !country.isEmpty() && country != identity[stremetteur.emt_pay];
}

PaperDocument Reader::Known::read(const Paper& from) {
    const DocumentKind& kind = *from.kind;
    const DocumentHeaders& h = kind.headers;
    const Record& client = clientOf(from.header[h.fac_clt]);
    PaperDocument paper;
    paper.seller = seller;
    paper.kind =
        kind.isCredit && kind.isConsignment ? QStringLiteral("Avoir sur bons de consignation") : kind.shownLabel;
    paper.number = from.header[h.fac_no];
    paper.date = from.header[h.fac_datf];
    paper.message = from.header[h.fac_mes].trimmed();
    writeParties(paper, from, client);
    writeFacts(paper, from, client);
    LineWriter writer(kind, style, lines);
    writer.hasPrices = showsPrices(kind, client);
    writer.hasEnglish = book.rules().hasEnglishLabels() && isForeign(client);
    Database file = from.file;
    writer.write(paper, file.select(kind.lines, numbering::linesOf(kind.lines, from.header[h.fac_aa], paper.number),
                                    Order{kind.lines.fac_no, kind.lines.fac_lg}));
    if (writer.hasPrices)
        writeEnd(paper, from);
    else
        paper.totals = {{QStringLiteral("Quantité totale"),
                         shown(file.sum(kind.lines, kind.lines.fac_qte,
                                        numbering::linesOf(kind.lines, from.header[h.fac_aa], paper.number)))}};
    if (kind.isProforma())
        paper.signatures = {QStringLiteral("Bon pour accord")};
    else if (!kind.isInvoicing())
        paper.signatures = {QStringLiteral("Remis par"), QStringLiteral("Reçu par")};
    return paper;
}

void Reader::Known::writeParties(PaperDocument& paper, const Paper& from, const Record& client) {
    const DocumentHeaders& h = from.kind->headers;
    QStringList own;
    for (const Label* line : h.address()) own.append(from.header[*line]);
    own = filled(own);
    QStringList invoicing;
    for (const Label* line :
         {&strclient.clt_fac1, &strclient.clt_fac2, &strclient.clt_fac3, &strclient.clt_fac4, &strclient.clt_fac5})
        invoicing.append(client[*line]);
    invoicing = filled(invoicing);
    const bool isInvoice = &h == &strface;
    const QString country = isForeign(client) ? countries::name(client[strclient.clt_pays]) : QString();
    paper.address = filled(QStringList{from.header[h.fac_nom]} + (isInvoice && !invoicing.isEmpty() ? invoicing : own) +
                           QStringList{country});
    QStringList delivery;
    if (from.kind->isTransfer()) return;
    const auto kept = book.blent.find(strbl, strbl.bl_cod == from.header[h.fac_clt]);
    const Record address = kept ? *kept : documents::presetDeliveryAddress(client);
    for (const Label* line : strbl.address()) delivery.append(address[*line]);
    delivery = filled(delivery);
    if (delivery != own) paper.delivery = delivery;
}

void Reader::Known::writeFacts(PaperDocument& paper, const Paper& from, const Record& client) {
    const DocumentHeaders& h = from.kind->headers;
    const Record& header = from.header;
    const auto add = [&paper](const char* caption, const QString& value) {
        if (!value.trimmed().isEmpty()) paper.facts.append({QString::fromUtf8(caption), value.trimmed()});
    };
    add("Client", header[h.fac_clt]);
    if (&h == &strface) {
        add("N° TVA client", client[strclient.clt_tva]);
        add("SIRET client", client[strclient.clt_nic]);
        add("Code service", client[strclient.clt_svc]);
    }
    const QString ordered = isEmptyDate(header[h.fac_datc]) ? QString() : QStringLiteral(" du ") + header[h.fac_datc];
    add("Votre commande", header[h.fac_refc] + ordered);
    add("Votre bon", header[h.fac_btr]);
    add("Patient", header[h.fac_pat]);
    add("Chirurgien", words(h.fac_chr, header));
    add("Représentant", words(h.fac_rep, header));
    add("Transport", words(h.fac_trs, header));
    if (!from.kind->isTransfer()) return;
    add("Dépôt de départ", words(strbtre.fac_depd, header));
    add("Dépôt d'arrivée", words(strbtre.fac_depa, header));
}

void Reader::Known::writeEnd(PaperDocument& paper, const Paper& from) {
    const DocumentAmounts amounts = amountsOf(book.molven, from.file, *from.kind, from.header);
    const auto money = [](const Decimal& amount) { return format(amount, MoneyPattern); };
    for (const DocumentAmounts::Vat& vat : amounts.vat)
        paper.vat.append({vat.code, shown(vat.rate) + QStringLiteral(" %"), money(vat.base), money(vat.amount)});
    if (!amounts.exempt.isZero())
        paper.vat.append({QString(), QStringLiteral("exonéré"), money(amounts.exempt), money(0)});
    writeTotals(paper, from, amounts);
    if (&from.kind->headers == &strface) writePayment(paper, from, amounts);
}

void Reader::Known::writeTotals(PaperDocument& paper, const Paper& from, const DocumentAmounts& amounts) {
    const DocumentHeaders& h = from.kind->headers;
    const Record& header = from.header;
    const auto add = [&paper](const QString& caption, const Decimal& amount) {
        paper.totals.append({caption, format(amount, MoneyPattern)});
    };
    const auto addSome = [&add](const QString& caption, const Decimal& amount) {
        if (!amount.isZero()) add(caption, amount);
    };
    const auto percent = [](const Decimal& rate) { return QStringLiteral(" ") + shown(rate) + QStringLiteral(" %"); };
    if (amounts.lines != header[h.fac_ht]) add(QStringLiteral("Total des lignes HT"), amounts.lines);
    addSome(QStringLiteral("Remise") + percent(header[h.fac_rem]), -amounts.discount);
    addSome(QStringLiteral("Escompte") + percent(header[h.fac_esc]), -amounts.settlement);
    addSome(QStringLiteral("Port HT"), amounts.carriage);
    addSome(QStringLiteral("Montant exonéré"), amounts.exempt);
    add(QStringLiteral("Total HT"), header[h.fac_ht]);
    add(QStringLiteral("Total TVA"), header[h.fac_ttc] - header[h.fac_ht]);
    const bool isPaidInPart = !header[h.fac_acpt].isZero();
    const QString currency = header[h.fac_mon].isEmpty() ? QString() : QStringLiteral(" ") + header[h.fac_mon];
    if (&h != &strface) return add(QStringLiteral("Total TTC") + currency, header[h.fac_ttc]);
    add(QStringLiteral("Total TTC"), header[h.fac_ttc]);
    if (isPaidInPart) add(QStringLiteral("Acompte"), -header[h.fac_acpt]);
    add((from.kind->isCredit ? QStringLiteral("Net de l'avoir") : QStringLiteral("Net à payer")) + currency,
        header[h.fac_ffa]);
}

void Reader::Known::writePayment(PaperDocument& paper, const Paper& from, const DocumentAmounts& amounts) {
    const DocumentHeaders& h = from.kind->headers;
    const auto& e = stremetteur;
    const auto add = [&paper](const char* caption, const QString& value) {
        if (!value.trimmed().isEmpty()) paper.payment.append({QString::fromUtf8(caption), value.trimmed()});
    };
    if (!from.kind->isCredit) {
        add("Échéance", isEmptyDate(from.header[h.fac_ech]) ? QString() : QString(from.header[h.fac_ech]));
        add("Règlement", words(h.fac_rglt, from.header));
        add("Banque", identity[e.emt_bque]);
        add("IBAN", identifiers::inFours(identity[e.emt_iban]));
        add("BIC", identity[e.emt_bic]);
    }
    paper.texts = texts;
    if (!amounts.exempt.isZero() && !identity[e.emt_exo].isEmpty())
        paper.texts.append(QStringLiteral("Montant exonéré de TVA : ") + identity[e.emt_exo]);
    if (from.kind->isCredit || from.kind->isProforma()) return;
    const QString early = amounts.settlement.isZero() ? QString(identity[e.emt_esc]) : QString();
    paper.texts += filled({early, identity[e.emt_pen]});
    if (identity[e.emt_pay] == u"FR") paper.texts.append(RecoveryIndemnity);
}

Reader::Reader(SalesBook& book, const Style& style) : known_(std::make_unique<Known>(book, style)) {}
Reader::~Reader() = default;

PaperDocument Reader::read(const Paper& paper) { return known_->read(paper); }

} // namespace molven::papers
