#include "reference/parties.h"

#include "data/errors.h"
#include "data/format.h"
#include "data/require.h"
#include "reference/codes.h"
#include "reference/countries.h"
#include "reference/identifiers.h"
#include "reference/parameters.h"

#include <algorithm>

#include <set>

namespace molven::parties {

namespace {

bool isNumber(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

void checkClient(Database molven, Record& checked, const Record* before) {
    const Record& client = checked;
    require(!client[strclient.clt_cod].isEmpty(), QStringLiteral(" N° Client obligatoire"), strclient.clt_cod);
    require(client[strclient.clt_cod].size() == 6 && Decimal::parse(client[strclient.clt_cod]).has_value(),
            QStringLiteral("code invalide"), strclient.clt_cod);
    require(!client[strclient.clt_nom].trimmed().isEmpty(), QStringLiteral(" Nom obligatoire"), strclient.clt_nom);
    const QString account = client[strclient.clt_cpt];
    require(account.isEmpty() || (isNumber(account) && account.size() == 6 && account != u"000000"),
            QStringLiteral("N° Compte incorrect"), strclient.clt_cpt);
    require(!client[strclient.clt_rgt].trimmed().isEmpty(), strclient.clt_rgt.unknown, strclient.clt_rgt);
    require(client[strclient.clt_tva].isEmpty() || identifiers::isVatNumber(client[strclient.clt_tva]),
            QStringLiteral("N° TVA incorrect"), strclient.clt_tva);
    require(client[strclient.clt_pays].isEmpty() || countries::isKnown(client[strclient.clt_pays]),
            QStringLiteral("Pays inconnu"), strclient.clt_pays);
    codes::check({{DataFile::Molven, molven}}, checked, before);
}

constexpr int LastCode = 999'999;

/// The code after the last one; when the last of all is taken, the first that is free. Codes that are no numbers, come
/// from another program, do not count. Empty when every code is taken.
QString nextCode(Database molven, const Table& table, const Text& key) {
    std::set<int> taken;
    const QStringList codes = molven.countBy(table, key).keys();
    for (const QString& code : codes) {
        bool isNumber = false;
        const int number = code.trimmed().toInt(&isNumber);
        if (isNumber && number > 0 && number <= LastCode) taken.insert(number);
    }
    int next = taken.empty() ? 1 : *taken.rbegin() + 1;
    if (next > LastCode)
        for (next = 1; taken.contains(next);) ++next;
    return next > LastCode ? QString() : padded(QString::number(next), 6);
}

Locks locksOf(const Table& table, const QString& code) { return Locks::of({table.name + u' ' + code}); }

void setFolder(Database molven, const Table& table, const Text& key, const QString& code, const Label& field,
               const QString& folder) {
    require(folder.size() <= field.size, QStringLiteral("Chemin trop long"), field);
    Transaction::run(molven.workspace(), QStringLiteral("Dossier des documents"), locksOf(table, padded(code, 6)), [&] {
        require(molven.update(table, {{field, folder}}, key == padded(code, 6)) > 0,
                QStringLiteral("Ce code n'existe pas"), key);
    });
}

} // namespace

Record blankClient(Database molven) {
    Record client(strclient);
    client[strclient.clt_cod] = nextCode(molven, strclient, strclient.clt_cod);
    client[strclient.clt_rgt] = QStringLiteral("01");
    client[strclient.clt_fam] = QStringLiteral("000");
    client[strclient.clt_fac] = QStringLiteral("O");
    return client;
}

std::optional<Record> findClient(Database molven, const QString& code) {
    if (code.trimmed().isEmpty()) return std::nullopt;
    return molven.find(strclient, strclient.clt_cod == padded(code, 6));
}

void foreseeClient(Database molven, const QString& code) {
    molven.foresee(strclient, {strclient.clt_cod == padded(code, 6)});
}

std::optional<Record> findSupplier(Database molven, const QString& code) {
    if (code.trimmed().isEmpty()) return std::nullopt;
    return molven.find(strfournis, strfournis.fou_cod == padded(code, 6));
}

namespace {

/// Writes a party under its code.
void save(Database molven, const Text& key, const Record& party, const std::optional<Record>& before) {
    const Locks locks = locksOf(party.table(), party[key]);
    Transaction::run(molven.workspace(), QStringLiteral("Fiche client ou fournisseur"), locks, [&] {
        Recordset existing = molven.select(party.table(), key == party[key]);
        if (before) {
            require(!existing.isEmpty(), QStringLiteral("Ce code n'existe pas"), key);
            existing.edit(*before);
        } else {
            require(existing.isEmpty(), QStringLiteral("Ce code existe déjà"), key);
            existing.addNew();
        }
        existing.draft() = party;
        existing.update();
    });
}

} // namespace

void saveClient(Database molven, Record client, const std::optional<Record>& before) {
    for (const Text* number : {&strclient.clt_cod, &strclient.clt_cpt}) client[*number] = padded(client[*number], 6);
    for (const Text* code : {&strclient.clt_tva, &strclient.clt_pays})
        client[*code] = identifiers::compact(client[*code]);
    checkClient(molven, client, before ? &*before : nullptr);
    save(molven, strclient.clt_cod, client, before);
}

void saveSupplier(Database molven, Record supplier, const std::optional<Record>& before) {
    const Record& read = supplier;
    supplier[strfournis.fou_cod] = padded(read[strfournis.fou_cod], 6);
    require(!read[strfournis.fou_cod].isEmpty(), QStringLiteral(" N° Fournisseur obligatoire"), strfournis.fou_cod);
    require(read[strfournis.fou_cod].size() == 6 && Decimal::parse(read[strfournis.fou_cod]).has_value(),
            QStringLiteral("code invalide"), strfournis.fou_cod);
    require(!read[strfournis.fou_nom].trimmed().isEmpty(), QStringLiteral(" Nom obligatoire"), strfournis.fou_nom);
    require(!read[strfournis.fou_rglt].isEmpty(), QStringLiteral("Mode règlement obligatoire"), strfournis.fou_rglt);
    codes::check({{DataFile::Molven, molven}}, supplier, before ? &*before : nullptr);
    save(molven, strfournis.fou_cod, supplier, before);
}

void setClientFolder(Database molven, const QString& code, const QString& folder) {
    setFolder(molven, strclient, strclient.clt_cod, code, strclient.clt_chemin, folder);
}

void setSupplierFolder(Database molven, const QString& code, const QString& folder) {
    setFolder(molven, strfournis, strfournis.fou_cod, code, strfournis.fou_chemin, folder);
}

void removeClient(Database molven, const QString& code) {
    molven.remove(strclient, strclient.clt_cod == padded(code, 6));
}

Record blankSupplier(Database molven) {
    Record supplier(strfournis);
    supplier[strfournis.fou_cod] = nextCode(molven, strfournis, strfournis.fou_cod);
    supplier[strfournis.fou_rglt] = QStringLiteral("01");
    supplier[strfournis.fou_fam] = QStringLiteral("000");
    return supplier;
}

void removeSupplier(Database molven, const QString& code) {
    molven.remove(strfournis, strfournis.fou_cod == padded(code, 6));
}

void listDocuments(Database documents, const QStringList& names) {
    Transaction transaction(documents.workspace());
    documents.remove(strdocs);
    for (const QString& name : names) {
        Record document(strdocs);
        document[strdocs.doc_fic] = name;
        documents.insert(document);
    }
    transaction.commit();
}

} // namespace molven::parties
