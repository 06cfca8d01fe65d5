#include "accounting/sales_statistics.h"

#include "data/errors.h"
#include "reference/articles.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "sales/document_tables.h"
#include "sales/documents.h"
#include "sales/numbering.h"

namespace molven::sales_statistics {

namespace {

// Names of the joined tables: header, line, article, client, VAT code.
const QString H = QStringLiteral("h"), L = QStringLiteral("l"), A = QStringLiteral("a"), C = QStringLiteral("c"),
              V = QStringLiteral("v");

const Expression Zero = constant(Decimal(0)), One = constant(Decimal(1)), Hundred = constant(Decimal(100)),
                 Hundredth = constant(Decimal::fromText(QStringLiteral("0.01"))), Nothing = constant(QString());

Joined lines(const Files& files, const Database& documents) {
    const DocumentLines& l = strfacl;
    Joined joined(documents, strface, H);
    joined.with(documents, l, L,
                same(of(L, l.fac_no), of(H, strface.fac_no)) && same(of(L, l.fac_aa), of(H, strface.fac_aa)) &&
                    of(L, l.fac_lg) != numbering::HiddenLine);
    joined.withAny(files.molven, strarticle, A, same(of(A, strarticle.art_ref), of(L, l.fac_ref)));
    joined.withAny(files.molven, strclient, C, same(of(C, strclient.clt_cod), of(H, strface.fac_clt)));
    joined.withAny(files.molven, strparfac, V, same(of(V, strparfac.par1_cde), of(L, l.fac_tva)));
    return joined;
}

/// Fields taken over as they are.
QList<Derived> copies(const SalesStatistics& s) {
    const DocumentLines& l = strfacl;
    const DocumentHeaders& h = strface;
    return {{s.sta_aa, of(L, l.fac_aa)},
            {s.sta_no, of(L, l.fac_no)},
            {s.sta_lg, of(L, l.fac_lg)},
            {s.sta_imm, of(L, l.fac_imm)},
            {s.sta_ref, of(L, l.fac_ref)},
            {s.sta_li1, of(L, l.fac_li1)},
            {s.sta_li2, of(L, l.fac_li2)},
            {s.sta_id1, of(L, l.fac_id1)},
            {s.sta_id2, of(L, l.fac_id2)},
            {s.sta_pvt, of(L, l.fac_pvt)},
            {s.sta_typ, of(L, l.fac_typ)},
            {s.sta_ste, of(L, l.fac_ste)},
            {s.sta_dst, of(L, l.fac_dst)},
            {s.sta_dpr, of(L, l.fac_dpr)},
            {s.sta_qte, of(L, l.fac_qte)},
            {s.sta_pa, of(L, l.fac_pa)},
            {s.sta_px, of(L, l.fac_px)},
            {s.sta_remx, of(L, l.fac_remx)},
            {s.sta_pv, of(L, l.fac_pv)},
            {s.sta_ht, of(L, l.fac_ht)},
            {s.sta_tva, of(L, l.fac_tva)},
            {s.sta_nho, of(L, l.fac_nho)},
            {s.sta_tip, of(L, l.fac_tip)},
            {s.sta_dep, of(L, l.fac_dep)},
            {s.sta_tar, of(L, l.fac_tar)},
            {s.sta_ttc, of(L, l.fac_ttc)},
            {s.sta_cpt, of(L, l.fac_cpt)},
            {s.sta_fimm, of(L, l.fac_fimm)},
            {s.sta_fref, of(L, l.fac_fref)},
            {s.sta_imp, of(L, l.fac_imp)},
            {s.sta_nbl, of(L, l.fac_nbl)},
            {s.sta_clt, of(H, h.fac_clt)},
            {s.sta_datf, of(H, h.tri_datf)},
            {s.sta_mon, of(H, h.fac_mon)},
            {s.sta_eur, of(H, h.fac_eur)},
            {s.sta_rep, of(H, h.fac_rep)},
            {s.sta_rem, of(H, h.fac_rem)},
            {s.sta_chr, of(H, h.fac_chr)},
            {s.sta_fam, orEmpty(of(A, strarticle.art_fam))},
            {s.sta_fou, orEmpty(of(A, strarticle.art_fou))},
            {s.sta_crp, orEmpty(of(A, strarticle.art_crp))},
            {s.sta_cdf, orEmpty(of(C, strclient.clt_fam))},
            {s.sta_nom, orEmpty(of(C, strclient.clt_nom))}};
}

/// Amounts of documents in other currencies turned into the company's.
class Exchange {
public:
    Exchange(const Files& files) : own_(files.currency), rate_(rateOf(files)) {}

    Expression operator()(const Expression& amount) const {
        const Expression foreign = quotient(2, product(6, {amount, numberIn(of(H, strface.fac_eur))}), rate_);
        return choice(same(of(H, strface.fac_mon), constant(own_)) || same(of(H, strface.fac_mon), Nothing), amount,
                      orZero(foreign));
    }

private:
    static Expression rateOf(const Files& files) {
        Database molven = files.molven;
        const auto own = molven.find(strmonnaie, strmonnaie.mon_cle == files.currency);
        return own ? constant((*own)[strmonnaie.mon_euro]) : One;
    }

    QString own_;
    Expression rate_;
};

Expression grossAmount() {
    const DocumentLines& l = strfacl;
    const Expression quantity = orZero(of(L, l.fac_qte)), price = orZero(of(L, l.fac_px));
    const Expression total = product(2, {quantity, price});
    const Expression withoutVat =
        quotient(2, product(2, {Hundred, total}), plus(Hundred, orZero(of(V, strparfac.par1_tx))));
    return choice(same(orZero(of(L, l.fac_remx)), Zero), orZero(of(L, l.fac_ht)),
                  choice(same(of(L, l.fac_tar), constant(QStringLiteral("H"))), total, withoutVat));
}

Expression lineAmount() { return orZero(of(L, strfacl.fac_ht)); }

/// A share of the document's discounted total: what the lines up to this one come to, less what the lines before do.
Expression discountedAmount() {
    const auto kept = [](const Expression& amount) {
        const auto share = [](const Number& percent) {
            return product(8, {Hundredth, minus(Hundred, orZero(of(H, percent)))});
        };
        return product(2, {amount, share(strface.fac_rem), share(strface.fac_esc)});
    };
    const Expression upToHere = runningSum(
        lineAmount(), {of(L, strfacl.fac_aa), of(L, strfacl.fac_no), of(L, strfacl.fac_tva)}, of(L, strfacl.fac_lg));
    return product(2, {One, minus(kept(upToHere), kept(minus(upToHere, lineAmount())))});
}

Criterion isAtHome(const Files& files) {
    const Expression country = orEmpty(of(C, strclient.clt_pays));
    return same(country, Nothing) || same(country, constant(files.country));
}

/// Two digits, or three overseas; none for a postal code of another form, or of another country.
Expression department(const Files& files, const Expression& postalCode) {
    const Expression two = start(postalCode, 2), overseas = constant(QStringLiteral("97")),
                     farOverseas = constant(QStringLiteral("98"));
    return choice(isAtHome(files) && matches(postalCode, QStringLiteral("[0-9][0-9][0-9][0-9][0-9]")),
                  choice(same(two, overseas) || same(two, farOverseas), start(postalCode, 3), two), Nothing);
}

/// The account that a line's amount is booked on: the export account of its article for a client abroad.
Expression salesAccount(const Files& files) {
    const auto firstGiven = [](const Expression& a, const Expression& b) { return choice(same(a, Nothing), b, a); };
    const Record usual = articles::blank();
    const auto standard = [&usual](const Text& field) { return constant(usual.value(field)); };
    return choice(isAtHome(files),
                  firstGiven(of(L, strfacl.fac_imp),
                             firstGiven(orEmpty(of(A, strarticle.art_cpt)), standard(strarticle.art_cpt))),
                  firstGiven(orEmpty(of(A, strarticle.art_cpte)), standard(strarticle.art_cpte)));
}

QList<Derived> computed(const SalesStatistics& s, const Files& files, const Expression& net) {
    const Exchange exchange(files);
    const Expression place = orEmpty(of(C, strclient.clt_l5));
    const Criterion hasPostalCode = matches(firstWord(place), QStringLiteral("*[0-9]*"));
    const Expression postalCode = choice(hasPostalCode, start(firstWord(place), s.sta_cp.size), Nothing);
    return {{s.sta_brut, exchange(grossAmount())},
            {s.sta_net, exchange(net)},
            {s.sta_achat, product(2, {orZero(of(L, strfacl.fac_qte)), orZero(of(L, strfacl.fac_pa))})},
            {s.sta_mac, start(of(H, strface.tri_datf), 6)},
            {s.sta_cp, postalCode},
            {s.sta_vil, choice(hasPostalCode, otherWords(place), place)},
            {s.sta_dpt, department(files, postalCode)},
            {s.sta_vte, salesAccount(files)}};
}

/// From the net amount and the purchase value.
QList<Derived> margins(const SalesStatistics& s) {
    const Expression margin = product(2, {One, minus(s.sta_net, s.sta_achat)});
    return {{s.sta_marge, margin}, {s.sta_pourc, orZero(quotient(2, product(2, {Hundred, margin}), s.sta_net))}};
}

/// Documents with a discount on the whole are read apart: their lines share it, which needs them in order.
Criterion isDiscounted() {
    const auto has = [](const Number& percent) { return !same(orZero(of(H, percent)), Zero); };
    return has(strface.fac_rem) || has(strface.fac_esc);
}

} // namespace

Files openFiles(Workspace& workspace, const Session& session) {
    Database molven = workspace.open(session.molven());
    const Database vente = workspace.open(session.vente()), historic = workspace.open(session.historic());
    const Database tri = workspace.open(session.tri()), compta = workspace.open(session.path(DataFile::Compta));
    const QString carriage = session.spe_cpt.trimmed();
    return {molven,
            vente,
            historic,
            tri,
            compta,
            parameters::companyCurrency(molven, session.spe_mon),
            session.rules().countryCode(),
            carriage.size() == strplan.cpt_aff.size ? carriage : CarriageAccount};
}

Expression ofHeader(const Field& field) { return of(H, field); }

qint64 fill(Files files, const SalesStatistics& table, const Criterion& headers) {
    Transaction transaction(files.tri.workspace(), {}, Locks::none());
    files.tri.remove(table);
    qint64 written = 0;
    const Criterion asked = headers && of(H, strface.fac_lg) == documents::HeaderKey;
    for (const Database& documents : {files.vente, files.historic})
        for (const auto& [condition, net] :
             {std::pair(!isDiscounted(), lineAmount()), std::pair(isDiscounted(), discountedAmount())})
            written += files.tri.derive(table, copies(table) + computed(table, files, net), margins(table),
                                        lines(files, documents), asked && condition);
    transaction.commit();
    return written;
}

qint64 regenerate(Files files, const SalesStatistics& table, const Period& period) {
    qint64 invoices = 0;
    for (Database documents : {files.vente, files.historic})
        invoices += documents.count(strface, period.covers(strface.tri_datf));
    if (invoices == 0) throw Refusal(QStringLiteral("aucune facture sélectionnée"), QStringLiteral("Mskdatdeb"));
    return fill(files, table, period.covers(ofHeader(strface.tri_datf)));
}

} // namespace molven::sales_statistics
