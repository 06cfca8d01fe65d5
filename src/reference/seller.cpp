#include "reference/seller.h"

#include "data/errors.h"
#include "data/require.h"
#include "reference/countries.h"
#include "reference/identifiers.h"
#include "shell/company_rules.h"
#include "shell/tables.h"

#include <QRegularExpression>

namespace molven::seller {

namespace {

const QList<const Label*>& lineFields() {
    static const QList<const Label*> all{&stremetteur.emt_l1, &stremetteur.emt_l2, &stremetteur.emt_l3};
    return all;
}

/// Puts letter lines into an identity. A line that does not fit is refused.
void putAddress(Record& identity, QStringList lines) {
    static const QRegularExpression town(QStringLiteral("^([0-9]{4,6}) +(.+)$"));
    const auto match = lines.isEmpty() ? QRegularExpressionMatch() : town.match(lines.last());
    identity[stremetteur.emt_cp] = match.captured(1);
    identity[stremetteur.emt_vil] = match.captured(2);
    if (match.hasMatch()) lines.removeLast();
    if (lines.size() > lineFields().size())
        throw Refusal(QStringLiteral("L'adresse a %1 lignes au plus, et une de plus pour le code postal et la ville")
                          .arg(lineFields().size()));
    for (qsizetype i = 0; i < lineFields().size(); ++i) {
        const QString line = lines.value(i).trimmed();
        if (line.size() > lineFields()[i]->size)
            throw Refusal(QStringLiteral("Ligne d'adresse trop longue (%1 caractères au plus) : %2")
                              .arg(lineFields()[i]->size)
                              .arg(line));
        identity[*lineFields()[i]] = line;
    }
}

/// What is known of the company before its identity was entered.
Record unentered(Database molven) {
    Record identity(stremetteur);
    identity[stremetteur.emt_pay] = CompanyRules().countryCode();
    identity[stremetteur.emt_pen] =
        QStringLiteral("Pénalités de retard : trois fois le taux d'intérêt légal, exigibles sans rappel");
    identity[stremetteur.emt_esc] = QStringLiteral("Pas d'escompte pour paiement anticipé");
    const auto company = molven.find(strspecif, {});
    if (!company) return identity;
    const Record& known = *company;
    identity[stremetteur.emt_pay] = CompanyRules(known[strspecif.spe_cod], {}).countryCode();
    identity[stremetteur.emt_nom] = known[strspecif.spe_nom];
    QStringList lines;
    for (const Label* field : {&strspecif.spe_l1, &strspecif.spe_l2, &strspecif.spe_l3, &strspecif.spe_l4})
        if (const QString line = known[*field].trimmed(); !line.isEmpty()) lines.append(line);
    putAddress(identity, lines);
    return identity;
}

/// Blanks and points are for reading; the numbers are kept without.
void compact(Record& identity) {
    for (const Text* field : {&stremetteur.emt_siret, &stremetteur.emt_ape, &stremetteur.emt_tva, &stremetteur.emt_iban,
                              &stremetteur.emt_bic, &stremetteur.emt_pay})
        identity[*field] = identifiers::compact(identity[*field]);
}

void check(const Record& identity) {
    const auto& e = stremetteur;
    const auto holds = [&identity](const Text& field, bool (*is)(const QString&), const char* message) {
        require(identity[field].isEmpty() || is(identity[field]), QString::fromUtf8(message), field);
    };
    require(!identity[e.emt_nom].trimmed().isEmpty(), QStringLiteral(" Nom obligatoire"), e.emt_nom);
    require(countries::isKnown(identity[e.emt_pay]), QStringLiteral("Pays inconnu"), e.emt_pay);
    require(!(identity[e.emt_cap] < 0), QStringLiteral("Capital incorrect"), e.emt_cap);
    holds(e.emt_siret, identifiers::isSiret, "N° SIRET incorrect");
    holds(e.emt_tva, identifiers::isVatNumber, "N° TVA incorrect");
    holds(e.emt_iban, identifiers::isIban, "IBAN incorrect");
    holds(e.emt_bic, identifiers::isBic, "BIC incorrect");
}

} // namespace

Record read(Database molven) {
    const auto identity = molven.find(stremetteur, {});
    return identity ? *identity : unentered(molven);
}

void save(Database molven, Record identity, const Record& before) {
    compact(identity);
    check(identity);
    Transaction transaction(molven.workspace(), QStringLiteral("Identité de l'émetteur"));
    Recordset stored = molven.select(stremetteur);
    stored.isEmpty() ? stored.addNew() : stored.edit(before);
    stored.draft() = identity;
    stored.update();
    transaction.commit();
}

QStringList addressLines(const Record& identity) {
    QStringList lines;
    for (const Label* field : lineFields()) lines.append(identity[*field].trimmed());
    lines.append((identity[stremetteur.emt_cp] + u' ' + identity[stremetteur.emt_vil]).trimmed());
    lines.removeAll(QString());
    return lines;
}

void setAddress(Database molven, const QStringList& lines) {
    const Record before = read(molven);
    Record identity = before;
    putAddress(identity, lines);
    save(molven, identity, before);
}

QString siren(const Record& identity) { return identity[stremetteur.emt_siret].left(9); }

} // namespace molven::seller
