#include "dossier/references.h"

#include "accounting/tables.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/codes.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"
#include "sales/document_tables.h"
#include "shell/startup.h"
#include "shell/tables.h"
#include "stock/depot_tables.h"
#include "stock/stock_tables.h"
#include "stock/unit_tables.h"

#include <QDir>
#include <QSet>

namespace molven::references {

namespace {

const QList<std::pair<DataFile, QString>>& places() {
    static const QList<std::pair<DataFile, QString>> all{{DataFile::Molven, {}},
                                                         {DataFile::Vente, {}},
                                                         {DataFile::Proforma, QStringLiteral(" (proformas)")},
                                                         {DataFile::Historic, QStringLiteral(" (archives)")},
                                                         {DataFile::Ostrane, QStringLiteral(" (OSTRANE)")},
                                                         {DataFile::Ancillaire, {}},
                                                         {DataFile::Stocks, QStringLiteral(" (inventaires)")},
                                                         {DataFile::Compta, {}},
                                                         {DataFile::Gencode, {}}};
    return all;
}

} // namespace

Files::Files(const Session& session) {
    for (const auto& [file, place] : places()) {
        const Database database = workspace.open(session.path(file));
        files_.emplace(file, database);
        searched_.push_back({file, database, place});
    }
    openOtherFolders(session);
}

void Files::openOtherFolders(const Session& session) {
    for (const QString& folder : startup::otherFolders(session)) {
        for (const DataFile file : {DataFile::Vente, DataFile::Proforma, DataFile::Historic}) {
            const QString path = folder + catalogueEntry(file).name;
            if (!Database::exists(path)) continue;
            others_.push_back(std::make_unique<Workspace>());
            searched_.push_back(
                {file, others_.back()->open(path), QStringLiteral(" (dossier %1)").arg(QDir(folder).dirName()), true});
        }
    }
}

namespace {

struct Noun {
    const Table& table;
    const char* one;
    const char* many;
};

/// "3 bons de livraison".
QString counted(qint64 count, const Table& table) {
    static const Noun nouns[] = {{strclient, "client", "clients"},
                                 {strfournis, "fournisseur", "fournisseurs"},
                                 {strarticle, "article", "articles"},
                                 {strartlpp, "article à plusieurs LPP", "articles à plusieurs LPP"},
                                 {strgencode, "code EAN", "codes EAN"},
                                 {strparam, "paramètre", "paramètres"},
                                 {strparfac, "code TVA", "codes TVA"},
                                 {strlpp, "code LPP", "codes LPP"},
                                 {strtarifclt, "tarif spécial", "tarifs spéciaux"},
                                 {strtauxrep, "taux de commission", "taux de commission"},
                                 {strproduit, "produit", "produits"},
                                 {strconform, "changement de conformité", "changements de conformité"},
                                 {strmvtstk, "mouvement de stock", "mouvements de stock"},
                                 {strdotation, "dotation", "dotations"},
                                 {strinvdep, "inventaire de dépôt", "inventaires de dépôt"},
                                 {strinvlig, "ligne d'inventaire", "lignes d'inventaire"},
                                 {strancillaire, "type d'ancillaire", "types d'ancillaire"},
                                 {strnomenclature, "composant d'ancillaire", "composants d'ancillaire"},
                                 {strstock, "ligne d'ancillaire", "lignes d'ancillaire"},
                                 {strlive, "bon de livraison", "bons de livraison"},
                                 {strcsge, "bon de consignation", "bons de consignation"},
                                 {strface, "facture ou avoir", "factures et avoirs"},
                                 {strbtre, "bon de transfert", "bons de transfert"},
                                 {strlivl, "ligne de livraison", "lignes de livraison"},
                                 {strcsgl, "ligne de consignation", "lignes de consignation"},
                                 {strfacl, "ligne de facture", "lignes de facture"},
                                 {strbtrl, "ligne de transfert", "lignes de transfert"},
                                 {strecrit, "écriture", "écritures"}};
    for (const Noun& noun : nouns)
        if (&noun.table == &table)
            return QString::number(count) + u' ' + QString::fromUtf8(count == 1 ? noun.one : noun.many);
    return QString::number(count) + u' ' + table.name;
}

} // namespace

std::vector<Reference> referencesOf(const Field& field) {
    if (!field.code) return {};
    if (field.code->table) return {{*field.code, {}}};
    std::vector<Reference> found;
    Criterion otherwise;
    for (const CodeKind::Case& one : field.code->cases) {
        found.push_back({one.kind, one.field == one.value});
        otherwise = otherwise && one.field != one.value;
    }
    if (field.code->otherwise) found.push_back({*field.code->otherwise, otherwise});
    return found;
}

namespace {

/// True when codes of this kind name that record.
bool names(const CodeKind& kind, const Record& record) {
    if (kind.table != &record.table()) return false;
    return !kind.list || record.value(*kind.list).compare(kind.letter, Qt::CaseInsensitive) == 0;
}

/// The records of a table that name this one, just deleted; nothing when the table has no such field. A code that
/// another record still bears is not orphaned.
std::optional<Criterion> usersOf(Files& files, const Table& table, const Record& record) {
    std::optional<Criterion> users;
    for (const Field* field : table.fields()) {
        for (const Reference& reference : referencesOf(*field)) {
            const CodeKind& kind = reference.kind;
            if (!names(kind, record)) continue;
            const QString code = record.value(*kind.key);
            if (files[kind.file].count(*kind.table, codes::ofKind(kind) && *kind.key == code) > 0) continue;
            const Criterion named = reference.where && isOneOf(*field, {code, padded(code, kind.digits)});
            users = users ? *users || named : named;
        }
    }
    return users;
}

/// The kind of the codes that name a record, from the fields of one table that hold such codes; null when it has none.
const CodeKind* kindNaming(const Record& record, const Table& table) {
    for (const Field* field : table.fields())
        for (const Reference& reference : referencesOf(*field))
            if (names(reference.kind, record)) return &reference.kind;
    return nullptr;
}

/// Some records the program itself lives by, used or not.
void requireNotReserved(Files& files, const Session& session, const Record& record) {
    for (const Files::Searched& searched : files.searched())
        for (const Table* table : tablesOf(searched.file)) {
            const CodeKind* kind = kindNaming(record, *table);
            if (kind && kind->reserved.contains(record.value(*kind->key), Qt::CaseInsensitive))
                throw Refusal(kind->subject + QStringLiteral(" sert au programme : suppression impossible"));
        }
    const bool isCurrency = &record.table() == &strmonnaie;
    if (isCurrency &&
        record[strmonnaie.mon_cle] == parameters::companyCurrency(files[DataFile::Molven], session.spe_mon))
        throw Refusal(QStringLiteral("Cette monnaie est celle de la société : suppression impossible"));
}

void requireUnused(Files& files, const Record& record) {
    QStringList uses;
    QString subject;
    for (Files::Searched searched : files.searched()) {
        for (const Table* table : tablesOf(searched.file)) {
            const auto users = usersOf(files, *table, record);
            const qint64 count = users ? searched.database.count(*table, *users) : 0;
            if (count == 0) continue;
            uses.append(counted(count, *table) + searched.place);
            subject = kindNaming(record, *table)->subject;
        }
    }
    if (!uses.isEmpty())
        throw Refusal(QStringLiteral("%1 a %2 : suppression impossible").arg(subject, uses.join(QStringLiteral(", "))));
}

} // namespace

void remove(const Session& session, const Record& record, const std::function<void(Files&)>& erase) {
    Files files(session);
    Transaction transaction(files.workspace, QStringLiteral("Suppression"));
    requireNotReserved(files, session, record);
    erase(files);
    requireUnused(files, record);
    transaction.commit();
}

void requireFollowUpKept(const UnitFiles& units, Database stocks, const QString& reference,
                         const std::optional<Record>& before) {
    Database molven = units.molven;
    const auto found = articles::find(molven, reference);
    if (!before || !found) return;
    const Record &article = *found, &former = *before;
    if (article[strarticle.art_aig] == former[strarticle.art_aig]) return;
    const auto refuse = [](const QString& what) {
        throw Refusal(QStringLiteral("Cet article a %1 : son suivi ne change plus").arg(what),
                      QStringLiteral("Txtop3"));
    };
    const Criterion ofArticle = strproduit.ref_art == reference;
    if (const qint64 count = molven.count(strproduit, ofArticle)) refuse(counted(count, strproduit));
    for (Database archive : units.archives)
        if (const qint64 count = archive.count(strproduit, ofArticle))
            refuse(counted(count, strproduit) + QStringLiteral(" (archives)"));
    const Criterion movements = strmvtstk.ref_stk == reference;
    if (const qint64 count = molven.count(strmvtstk, movements) + stocks.count(strmvtstk, movements))
        refuse(counted(count, strmvtstk));
    const bool byUnit = article[strarticle.art_aig] == follow_up::ByUnit;
    if (const Decimal stock = former[strarticle.art_stk]; byUnit && !stock.isZero())
        refuse(QStringLiteral("un stock de ") + shown(stock));
}

QString saveArticle(const Session& session, const articles::Entry& entry, const std::optional<Record>& before) {
    Files files(session);
    const UnitFiles units = openUnitFiles(files.workspace, session);
    const QString reference = entry.article.value(strarticle.art_ref).trimmed();
    return Transaction::run(files.workspace, QStringLiteral("Fiche article"), articles::locksOf(reference), [&] {
        const QString notice = articles::save(files[DataFile::Molven], files[DataFile::Compta],
                                              files[DataFile::Gencode], session.rules(), entry, before);
        requireFollowUpKept(units, files[DataFile::Stocks], reference, before);
        return notice;
    });
}

namespace {

/// The codes that a kind's table holds, in upper case; read once a kind.
class KnownCodes {
public:
    explicit KnownCodes(Files& files) : files_(files) {}

    bool holds(const CodeKind& kind, const QString& code) {
        if (kind.besides.contains(code, Qt::CaseInsensitive)) return true;
        const QSet<QString>& codes = of(kind);
        const QStringList forms = codes::formsOf(kind, code.toUpper());
        return std::any_of(forms.begin(), forms.end(), [&codes](const QString& form) { return codes.contains(form); });
    }

private:
    const QSet<QString>& of(const CodeKind& kind) {
        const auto known = read_.constFind(&kind);
        if (known != read_.constEnd()) return *known;
        QSet<QString> codes;
        const auto counts = files_[kind.file].countBy(*kind.table, *kind.key, codes::ofKind(kind));
        for (auto code = counts.begin(); code != counts.end(); ++code) codes.insert(code.key().toUpper());
        return *read_.insert(&kind, codes);
    }

    Files& files_;
    QHash<const CodeKind*, QSet<QString>> read_;
};

/// The codes of one field of one file that name no record.
QList<Orphan> orphansOf(Files::Searched searched, const Table& table, const Field& field, KnownCodes& known) {
    QList<Orphan> found;
    for (const Reference& reference : referencesOf(field)) {
        const CodeKind& kind = reference.kind;
        if (!kind.table || kind.acceptsUnknown) continue;
        const auto counts = searched.database.countBy(table, field, reference.where && trimmed(field) != QString());
        for (auto code = counts.begin(); code != counts.end(); ++code)
            if (!known.holds(kind, code.key().trimmed()))
                found.append({catalogueEntry(searched.file).name, code.key(),
                              QStringLiteral("%1 n'existe pas : %2")
                                  .arg(kind.subject, counted(code.value(), table) + searched.place)});
    }
    return found;
}

} // namespace

QList<Orphan> orphans(Files& files) {
    KnownCodes known(files);
    QList<Orphan> found;
    for (const Files::Searched& searched : files.searched())
        for (const Table* table : tablesOf(searched.file))
            for (const Field* field : table->fields())
                if (!field->unknown.isEmpty()) found += orphansOf(searched, *table, *field, known);
    return found;
}

} // namespace molven::references
