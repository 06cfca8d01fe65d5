#include "dossier/check/checks.h"

#include "data/dates.h"
#include "data/journal_tables.h"
#include "sales/record_trail.h"
#include "stock/immatriculation.h"
#include "stock/stock_tables.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <unordered_map>

namespace molven::check {

namespace {

/// A date and the key that sorts by it; null when the table keeps none.
struct DateField {
    const Text& date;
    const Text* key;
};

QString faultOf(const DateField& field, const Record& record) {
    const QString date = record[field.date];
    if (!isEmptyDate(date) && !dateFromText(date).isValid())
        return QStringLiteral("%1 : date impossible « %2 »").arg(field.date.name, date);
    if (field.key && record[*field.key].trimmed() != sortKey(date))
        return QStringLiteral("%1 autre que la date %2").arg(field.key->name, date);
    return {};
}

void checkDates(const QString& file, const Record& record, const QString& subject, const QList<DateField>& dates,
                Faults& faults) {
    for (const DateField& field : dates)
        if (const QString text = faultOf(field, record); !text.isEmpty())
            faults.append({file, subject, text, &kind::Values});
}

void checkUnitValues(Database molven, Faults& faults) {
    const auto& u = strproduit;
    const QList<DateField> dates{{u.dat_cde, &u.tri_cde},
                                 {u.dat_liv, &u.tri_liv},
                                 {u.dat_dlv, &u.tri_dlv},
                                 {u.dat_vte, &u.tri_vte},
                                 {u.reg_dat, nullptr}};
    const QString file = QStringLiteral("molven.mdb");
    for (const Record& unit : molven.select(u)) {
        const QString number = unit[u.imm_art];
        const Immatriculation key = Immatriculation::fromText(number);
        const int received = number.mid(2, 2).toInt();
        if (!key.isValid() || key.number() != number || received < 1 || received > 12 || unit[u.pro_ann].size() != 2)
            faults.append({file, number, QStringLiteral("immatriculation malformée"), &kind::Values});
        checkDates(file, unit, number, dates, faults);
        for (const Text* month : {&u.dat_ste, &u.dat_per})
            if (const QString text = unit[*month];
                text.contains(QRegularExpression(QStringLiteral("\\d"))) && !isMonthYear(text))
                faults.append({file, number, QStringLiteral("%1 : mois impossible « %2 »").arg(month->name, text),
                               &kind::Values});
    }
}

} // namespace

void checkValues(references::Files& files, Faults& faults) {
    checkUnitValues(files[DataFile::Molven], faults);
    for (const Record& movement : files[DataFile::Molven].select(strmvtstk))
        checkDates(QStringLiteral("molven.mdb"), movement, movement[strmvtstk.ref_stk],
                   {{strmvtstk.dat_stk, &strmvtstk.tri_stk}}, faults);
    for (references::Files::Searched searched : files.searched()) {
        if (searched.file != DataFile::Vente && searched.file != DataFile::Historic) continue;
        for (const Family& family : families()) {
            const DocumentHeaders& table = family.headers;
            for (const Record& header : searched.database.select(table))
                checkDates(catalogueEntry(searched.file).name, header, family.name + u' ' + header[table.fac_no],
                           {{table.fac_datf, nullptr}, {table.fac_datc, nullptr}, {table.fac_ech, nullptr}}, faults);
        }
    }
}

namespace {

/// What the journal last wrote of one field, as a hash: a million units fit in memory.
struct LastValue {
    int position;
    size_t hash;
};

size_t hashOf(const Field& field, const QString& value) {
    if (value.isEmpty()) return 0;
    return qHash(field.kind == Field::Kind::Number ? Decimal::fromText(value).toString() : value);
}

/// The last values that a journal holds of one table, by the records' keys.
class LastValues {
public:
    explicit LastValues(const Table& table) : table_(table) {}

    void add(const Record& entry) {
        const QString key = entry[strjournal.jou_cle], how = entry[strjournal.jou_gen];
        if (how != u"M") {
            values_.erase(key);
            return;
        }
        const QJsonObject changes = QJsonDocument::fromJson(entry[strjournal.jou_val].toUtf8()).object();
        std::vector<LastValue> last = std::move(values_[key]);
        values_.erase(key);
        for (const Field* field : table_.fields()) {
            const auto change = changes.constFind(field->name);
            if (change == changes.constEnd()) continue;
            std::erase_if(last, [field](const LastValue& one) { return one.position == field->position; });
            last.push_back({field->position, hashOf(*field, change->toArray()[1].toString())});
        }
        values_[keyAfter(key, changes)] = std::move(last);
    }

    /// The fields of a record that hold something else.
    QStringList differing(const Record& record) const {
        QStringList parts, titles;
        for (const Field* field : table_.trail()->key) parts.append(record.value(*field));
        const auto found = values_.find(parts.join(u'/'));
        if (found == values_.end()) return {};
        for (const LastValue& last : found->second) {
            const Field& field = *table_.fields()[last.position];
            if (hashOf(field, record.value(field)) != last.hash)
                titles.append(record_trail::fieldTitle(table_.name, field.name));
        }
        return titles;
    }

private:
    /// A change of a key field leaves the record under another key.
    QString keyAfter(const QString& key, const QJsonObject& changes) const {
        QStringList parts = key.split(u'/');
        const auto& fields = table_.trail()->key;
        for (qsizetype i = 0; i < static_cast<qsizetype>(fields.size()) && i < parts.size(); ++i)
            if (const auto change = changes.constFind(fields[i]->name); change != changes.constEnd())
                parts[i] = change->toArray()[1].toString();
        return parts.join(u'/');
    }

    const Table& table_;
    std::unordered_map<QString, std::vector<LastValue>> values_;
};

/// A journal's key tells records apart only where the table does.
bool tellsRecordsApart(const Table& table) {
    const auto indexes = table.indexes();
    return table.trail() && std::any_of(indexes.begin(), indexes.end(),
                                        [](const Index* index) { return index->uniqueness == Uniqueness::Unique; });
}

} // namespace

void checkAgainstJournal(const CatalogueEntry& entry, Database file, Faults& faults) {
    std::map<QString, LastValues> journals;
    for (const Table* table : tablesOf(entry.file))
        if (tellsRecordsApart(*table)) journals.emplace(table->name, LastValues(*table));
    for (const Record& change : file.select(strjournal))
        if (const auto journal = journals.find(change[strjournal.jou_tab]); journal != journals.end())
            journal->second.add(change);
    for (const Table* table : tablesOf(entry.file)) {
        const auto journal = journals.find(table->name);
        if (journal == journals.end()) continue;
        for (const Record& record : file.select(*table))
            if (const QStringList titles = journal->second.differing(record); !titles.isEmpty()) {
                QStringList key;
                for (const Field* field : table->trail()->key) key.append(record.value(*field));
                faults.append({entry.name, record_trail::tableTitle(table->name) + u' ' + key.join(u'/'),
                               QStringLiteral("changé hors du programme : ") + titles.join(QStringLiteral(", ")),
                               &kind::Altered});
            }
    }
}

} // namespace molven::check
