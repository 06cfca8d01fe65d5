#include "reference/parties.h"

#include "data/errors.h"
#include "data/format.h"
#include "reference/parameters.h"
#include "reference/tariff_tables.h"

namespace molven::parties {

namespace {

void require(bool held, const QString& message, const Field& field) {
    if (!held) throw Refusal(message, field.name);
}

void checkClient(Database molven, const Record& client) {
    require(!client[strclient.clt_cod].isEmpty(), QStringLiteral(" N° Client obligatoire"), strclient.clt_cod);
    require(client[strclient.clt_cod].size() == 6 && Decimal::parse(client[strclient.clt_cod]).has_value(),
            QStringLiteral("code invalide"), strclient.clt_cod);
    require(!client[strclient.clt_nom].trimmed().isEmpty(), QStringLiteral(" Nom obligatoire"), strclient.clt_nom);
    const QString account = client[strclient.clt_cpt];
    require(account.isEmpty() || (account.size() == 6 && account >= u"000001" && account <= u"999999"),
            QStringLiteral("N° Compte incorrect"), strclient.clt_cpt);
    require(parameters::paymentMode(molven, client[strclient.clt_rgt]).has_value(),
            QStringLiteral("Mode de règlement inconnu"), strclient.clt_rgt);
    const QString depot = client[strclient.clt_dep];
    require(depot.isEmpty() || parameters::find(molven, list::Depot, depot), QStringLiteral("Dépôt inconnu"),
            strclient.clt_dep);
    const QString discount = client[strclient.clt_rem];
    require(discount.isEmpty() || molven.count(strparrem, strparrem.rem_clt == discount) > 0,
            QStringLiteral("Code remise incorrect"), strclient.clt_rem);
}

} // namespace

Record blankClient(Database molven) {
    Record client(strclient);
    const Decimal last = Decimal::fromText(molven.greatest(strclient, strclient.clt_cod));
    client[strclient.clt_cod] = format(last + 1, QStringLiteral("000000"));
    client[strclient.clt_rgt] = QStringLiteral("01");
    client[strclient.clt_fam] = QStringLiteral("000");
    client[strclient.clt_fac] = QStringLiteral("O");
    return client;
}

std::optional<Record> findClient(Database molven, const QString& code) {
    if (code.trimmed().isEmpty()) return std::nullopt;
    return molven.find(strclient, strclient.clt_cod == padded(code, 6));
}

std::optional<Record> findSupplier(Database molven, const QString& code) {
    if (code.trimmed().isEmpty()) return std::nullopt;
    return molven.find(strfournis, strfournis.fou_cod == padded(code, 6));
}

void saveClient(Database molven, Record client, const std::optional<Record>& before) {
    const Record& read = client;
    client[strclient.clt_cod] = padded(read[strclient.clt_cod], 6);
    checkClient(molven, client);
    Transaction transaction(molven.workspace());
    Recordset existing = molven.select(strclient, strclient.clt_cod == read[strclient.clt_cod]);
    if (before) {
        require(!existing.isEmpty(), QStringLiteral("Ce code n'existe pas"), strclient.clt_cod);
        existing.edit(*before);
    } else {
        require(existing.isEmpty(), QStringLiteral("Ce code existe déjà"), strclient.clt_cod);
        existing.addNew();
    }
    existing.draft() = client;
    existing.update();
    transaction.commit();
}

void removeClient(Database molven, const QString& code) {
    molven.remove(strclient, strclient.clt_cod == padded(code, 6));
}

} // namespace molven::parties
