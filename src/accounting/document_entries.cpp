#include "accounting/document_entries.h"

#include "data/errors.h"
#include "reference/articles.h"
#include "reference/parameter_tables.h"
#include "reference/party_tables.h"
#include "sales/document_kind.h"
#include "sales/documents.h"
#include "sales/totals.h"

#include <QMap>

namespace molven {

/// One line of an entry: debited when positive, credited when negative.
struct DocumentEntries::Amount {
    QString account, vatCode;
    Decimal value;
    QString dueDate = {};
};

DocumentEntries::DocumentEntries(Database molven, Database compta, const QString& carriage, const QString& currency)
    : clients_(molven.valuesBy(strclient, strclient.clt_cod, strclient.clt_cpt)),
      vats_(molven.valuesBy(strparfac, strparfac.par1_cde, strparfac.par1_cpt)),
      carriage_(carriage),
      currency_(currency) {
    for (const QStringList& account : compta.values(strplan, {&strplan.cpt_aff})) chart_.insert(account.first());
}

const QString& DocumentEntries::known(const QString& account) const {
    if (!chart_.contains(account)) throw Refusal(QStringLiteral("compte %1 absent du plan comptable").arg(account));
    return account;
}

QString DocumentEntries::clientAccount(const QString& client) const {
    const auto account = clients_.constFind(client);
    if (account == clients_.constEnd()) throw Refusal(QStringLiteral("client %1 inconnu").arg(client));
    return known(account->isEmpty() ? ClientsAccount : ClientAccountStart + *account);
}

QString DocumentEntries::vatAccount(const QString& code) const {
    const QString account = vats_.value(code);
    if (account.isEmpty()) throw Refusal(QStringLiteral("code TVA %1 sans compte").arg(code));
    return known(account);
}

QList<DocumentEntries::Amount> DocumentEntries::amounts(const Record& header, const QList<Part>& parts) const {
    const DocumentHeaders& h = strface;
    const Decimal hundred = 100;
    const Decimal kept = (hundred - header[h.fac_rem]) / hundred * (hundred - header[h.fac_esc]) / hundred;
    QList<Amount> found;
    QMap<QString, Decimal> vat;
    for (const Part& part : parts) {
        if (!part.net.isZero()) found.append({known(part.account), part.vatCode, -part.net});
        vat[part.vatCode] += part.vat;
    }
    for (Decimal& amount : vat) amount = (amount * kept).rounded(2);
    vat[totals::CarriageVat] += header[h.fac_tvp];
    if (!header[h.fac_exo].isZero())
        found.append({known(articles::blank().value(strarticle.art_cpt)), {}, -header[h.fac_exo]});
    if (!header[h.fac_port].isZero()) found.append({known(carriage_), totals::CarriageVat, -header[h.fac_port]});
    for (auto one = vat.begin(); one != vat.end(); ++one)
        if (!one->isZero()) found.append({vatAccount(one.key()), one.key(), -*one});
    return found;
}

QList<Record> DocumentEntries::of(const Record& header, const QList<Part>& parts) const {
    const DocumentHeaders& h = strface;
    if (parts.isEmpty()) throw Refusal(QStringLiteral("aucune ligne"));
    if (const QString currency = header[h.fac_mon]; !currency.isEmpty() && currency != currency_)
        throw Refusal(QStringLiteral("monnaie %1").arg(currency));
    QList<Amount> all = amounts(header, parts);
    const Decimal total = header[h.fac_ttc];
    if (!total.isZero()) all.prepend({clientAccount(header[h.fac_clt]), {}, total, header[h.fac_ech]});
    Decimal balance;
    for (const Amount& amount : all) balance += amount.value;
    if (!balance.isZero()) throw Refusal(QStringLiteral("totaux autres que ceux des lignes"));
    const bool isCredit = documents::isOfKind(documentKind(QStringLiteral("AVO")), header);
    const auto& e = strecrit;
    QList<Record> lines;
    for (const Amount& amount : all) {
        const bool isDebit = amount.value > Decimal(0);
        Record line(e);
        line[e.ecr_lg] = QString::number(lines.size() + 1).rightJustified(3, u'0');
        line[e.ecr_jou] = SalesJournal;
        line[e.ecr_dat] = header[h.fac_datf];
        line[e.tri_dat] = header[h.tri_datf];
        line[e.ecr_cpt] = amount.account;
        line[e.ecr_clt] = header[h.fac_clt];
        line[e.ecr_lib] = (QStringLiteral("%1 %2 %3")
                               .arg(isCredit ? QStringLiteral("Avoir") : QStringLiteral("Facture"), header[h.fac_no],
                                    header[h.fac_nom]))
                              .left(e.ecr_lib.size);
        if (isDebit)
            line[e.ecr_deb] = amount.value;
        else
            line[e.ecr_cre] = -amount.value;
        line[e.ecr_ech] = amount.dueDate;
        line[e.ecr_tva] = amount.vatCode;
        line[e.ecr_aa] = header[h.fac_aa];
        line[e.ecr_no] = header[h.fac_no];
        line[e.ecr_mod] = isCredit ? QStringLiteral("AVO") : QStringLiteral("FAC");
        lines.append(line);
    }
    return lines;
}

} // namespace molven
