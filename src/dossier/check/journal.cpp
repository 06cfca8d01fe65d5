#include "data/journal.h"

#include "data/journal_tables.h"
#include "dossier/check/checks.h"
#include "dossier/check/ledger.h"
#include "sales/record_trail.h"

#include <algorithm>
#include <unordered_set>

namespace molven::check {

namespace {

/// Faults told of one table; further ones are counted.
constexpr qsizetype Told = 200;

using Sums = std::unordered_map<RecordKey, std::vector<Sum>>;

bool takeFrom(Sums& sums, RecordKey key, Sum sum) {
    const auto found = sums.find(key);
    if (found == sums.end()) return false;
    const auto one = std::find(found->second.begin(), found->second.end(), sum);
    if (one == found->second.end()) return false;
    found->second.erase(one);
    if (found->second.empty()) sums.erase(found);
    return true;
}

Sum totalOf(const std::vector<Sum>& sums) {
    Sum total = 0;
    for (const Sum sum : sums) total += sum;
    return total;
}

/// A table of a file that is not as its journal says: records that it does not know so, and what it knows and did not
/// find.
struct Doubt {
    const DossierFile* file;
    const Table* table;
    bool isJournalEmpty;
    std::size_t records; ///< that the table holds
    Sums odd, unmet;
    std::unordered_multimap<RecordKey, RecordKey> origins;

    /// Nothing tells the author of any of its records.
    bool isUnknownWhole() const { return isJournalEmpty && records > 0 && odd.size() == records; }
};

/// Of records that share a key, the journal does not tell which one a change was made to.
void settleTogether(Doubt& doubt) {
    std::erase_if(doubt.odd, [&doubt](const auto& odd) {
        const auto unmet = doubt.unmet.find(odd.first);
        if (unmet == doubt.unmet.end() || unmet->second.size() != odd.second.size() ||
            totalOf(unmet->second) != totalOf(odd.second))
            return false;
        doubt.unmet.erase(unmet);
        return true;
    });
}

Doubt compare(const DossierFile& file, Database database, const Table& table, Ledger<Sum>& ledger) {
    Doubt doubt{&file, &table, database.count(strjournal) == 0, 0, {}, {}, std::move(ledger.origins)};
    for (const Record& record : database.select(table)) {
        ++doubt.records;
        const RecordKey key = recordKey(keyOf(record));
        const Sum sum = digest::sumOf(record);
        if (!ledger.records.takeEqual(key, sum)) doubt.odd[key].push_back(sum);
    }
    ledger.records.forEach([&doubt](RecordKey key, Sum sum) { doubt.unmet[key].push_back(sum); });
    settleTogether(doubt);
    return doubt;
}

using Ledgers = std::map<QString, Ledger<Sum>>;

void follow(Database database, Ledgers& ledgers, const QList<const Table*>& tables) {
    Journal::read(database, {}, {}, [&](const Record& row) {
        const auto ledger = ledgers.find(row[strjournal.jou_tab]);
        if (ledger == ledgers.end()) return;
        const auto table = std::find_if(tables.begin(), tables.end(),
                                        [&ledger](const Table* one) { return one->name == ledger->first; });
        ledger->second.add(Entry(**table, row));
    });
}

/// A fault that puts all of a file in doubt.
Fault journalFault(const DossierFile& file, const QString& text) {
    return {file.entry->name, strjournal.name, text, &kind::Journal, {file.path, &strjournal, {}}};
}

/// Every table of a file that is not as its journal says.
void collect(const DossierFile& file, std::vector<Doubt>& doubts, Faults& faults) {
    Workspace workspace;
    Database database = workspace.open(file.path);
    for (const QString& broken : Journal::faults(database)) faults.append(journalFault(file, broken));
    QList<const Table*> tables = tablesOf(file.entry->file);
    tables.removeIf([](const Table* table) { return !table->trail(); });
    Ledgers ledgers;
    for (const Table* table : tables) ledgers.emplace(table->name, *table);
    follow(database, ledgers, tables);
    for (const Table* table : tables) {
        Doubt doubt = compare(file, database, *table, ledgers.at(table->name));
        if (!doubt.odd.empty() || !doubt.unmet.empty()) doubts.push_back(std::move(doubt));
        ledgers.erase(table->name);
    }
}

/// A record that left one file whole and lies in another was moved there: archived, or taken out of the archive.
void settleMoves(std::vector<Doubt>& doubts) {
    for (Doubt& to : doubts)
        for (Doubt& from : doubts) {
            if (to.table != from.table || &to == &from) continue;
            for (auto& [key, sums] : to.odd)
                std::erase_if(sums, [&, key = key](Sum sum) { return takeFrom(from.unmet, key, sum); });
            std::erase_if(to.odd, [](const auto& one) { return one.second.empty(); });
        }
}

/// What the journal says of the records in doubt, value by value.
class Inquiry {
public:
    explicit Inquiry(Doubt& doubt)
        : doubt_(doubt), database_(workspace_.open(doubt.file->path)), ledger_(*doubt.table) {
        std::vector<RecordKey> asked;
        for (const auto& [key, sums] : doubt.unmet) asked.push_back(key);
        while (!asked.empty()) {
            const RecordKey key = asked.back();
            asked.pop_back();
            if (!keys_.insert(key).second) continue;
            const auto [first, last] = doubt.origins.equal_range(key);
            for (auto origin = first; origin != last; ++origin) asked.push_back(origin->second);
        }
        Journal::read(database_, {}, strjournal.jou_tab == doubt.table->name, [this](const Record& row) {
            if (!keys_.contains(recordKey(row[strjournal.jou_cle]))) return;
            const Entry entry(*doubt_.table, row);
            ledger_.add(entry);
            names_.insert(recordKey(entry.keyAfter), entry.keyAfter);
        });
    }

    void run(Faults& faults) {
        const qsizetype before = faults.size();
        tellRecords(faults);
        for (const auto& [key, sums] : doubt_.unmet)
            faults.append(told(names_.value(key), QStringLiteral("supprimé hors du programme"), kind::Removed));
        if (faults.size() <= before + Told) return;
        const qsizetype more = faults.size() - before - Told;
        faults.resize(before + Told);
        faults.append(journalFault(*doubt_.file, QStringLiteral("%1 : et %2 autres ajoutés, changés ou supprimés hors "
                                                                "du programme")
                                                     .arg(record_trail::tableTitle(doubt_.table->name))
                                                     .arg(more)));
    }

private:
    /// The header of the document that a line is of.
    Place placeOf(const QString& key) const {
        for (const Family& family : families())
            if (&family.lines == doubt_.table) return {doubt_.file->path, &family.headers, key.section(u'/', 0, 1)};
        return {doubt_.file->path, doubt_.table, key};
    }

    Fault told(const QString& key, const QString& text, const Kind& kind) const {
        return {doubt_.file->entry->name, record_trail::tableTitle(doubt_.table->name) + u' ' + key, text, &kind,
                placeOf(key)};
    }

    void tellRecords(Faults& faults) {
        if (doubt_.odd.empty()) return;
        for (const Record& record : database_.select(*doubt_.table)) {
            const QString name = keyOf(record);
            const RecordKey key = recordKey(name);
            if (!takeFrom(doubt_.odd, key, digest::sumOf(record))) continue;
            if (!doubt_.unmet.contains(key)) {
                faults.append(told(name, QStringLiteral("ajouté hors du programme"), kind::Added));
                continue;
            }
            takeFrom(doubt_.unmet, key, doubt_.unmet.at(key).front());
            const Marks marks = ledger_.records.holds(key) ? ledger_.records.take(key) : Marks();
            if (const auto fields = differing(record, marks); !fields.isEmpty())
                faults.append(alteration(name, fields));
        }
    }

    /// A value that was altered and put right by the program since is no fault.
    QList<const Field*> differing(const Record& record, const Marks& marks) const {
        QList<const Field*> fields;
        for (const Field* field : record.table().fields())
            if (digest::markOf(*field, record.value(*field)) != marks.value(field)) fields.append(field);
        return fields;
    }

    Fault alteration(const QString& key, const QList<const Field*>& fields) const {
        QStringList titles;
        for (const Field* field : fields) titles.append(record_trail::fieldTitle(doubt_.table->name, field->name));
        titles.removeDuplicates();
        const bool isMendable = std::all_of(fields.begin(), fields.end(),
                                            [this](const Field* field) { return isMended(*doubt_.table, *field); });
        return told(key, QStringLiteral("changé hors du programme : ") + titles.join(QStringLiteral(", ")),
                    isMendable ? kind::AlteredSums : kind::Altered);
    }

    Doubt& doubt_;
    Workspace workspace_;
    Database database_;
    Ledger<Marks> ledger_;
    std::unordered_set<RecordKey> keys_;
    QHash<RecordKey, QString> names_;
};

} // namespace

void checkJournals(const QList<DossierFile>& files, Faults& faults) {
    std::vector<Doubt> doubts;
    for (const DossierFile& file : files)
        if (tablesOf(file.entry->file).contains(&strjournal)) collect(file, doubts, faults);
    settleMoves(doubts);
    const DossierFile* emptied = nullptr;
    for (Doubt& doubt : doubts) {
        if (!doubt.isUnknownWhole()) {
            Inquiry(doubt).run(faults);
        } else if (emptied != doubt.file) {
            emptied = doubt.file;
            faults.append(journalFault(*emptied, QStringLiteral("journal vidé : plus aucune fiche de ce fichier n'a "
                                                                "d'auteur")));
        }
    }
}

} // namespace molven::check
