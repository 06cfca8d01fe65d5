#include "sales/record_trail.h"

#include "data/database.h"
#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "data/journal.h"
#include "data/journal_tables.h"
#include "reference/article_tables.h"
#include "reference/parameter_tables.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"
#include "sales/document_kind.h"
#include "stock/immatriculation.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace molven::record_trail {

namespace {

/// What of the journals a subject selects: entries of some tables, all when there are none, of some keys.
struct Selection {
    QList<const Table*> tables;
    JournalKeys keys;
    QList<DataFile> files = {}; ///< searched; all when there are none
};

/// The file that a document's key names.
std::optional<DataFile> fileOf(const QString& key) {
    const QString name = key.section(u'/', -4, -4);
    for (const CatalogueEntry& entry : catalogue())
        if (entry.name == name) return entry.file;
    return std::nullopt;
}

/// A table's title in its file: the proformas and the second book have the tables of the invoices.
QString titleIn(DataFile file, const Table& table) {
    const bool isHeader = &table == &strface;
    if (file == DataFile::Proforma)
        return isHeader ? QStringLiteral("Proforma") : QStringLiteral("Ligne de la proforma");
    if (file == DataFile::Ostrane) return tableTitle(table.name) + QStringLiteral(" OSTRANE");
    return tableTitle(table.name);
}

Selection documents(const QString& key) {
    const QString number = padded(key.section(u'/', -1), 6);
    const QString year = key.section(u'/', -2, -2);
    const QString family = key.section(u'/', -3, -3);
    QList<const Table*> tables{&strlive, &strlivl, &strcsge, &strcsgl, &strface, &strfacl, &strbtre, &strbtrl};
    for (qsizetype i = 0; i < tables.size() && !family.isEmpty(); i += 2)
        if (tables[i]->name == family) tables = {tables[i], tables[i + 1]};
    QList<DataFile> files;
    if (const auto file = fileOf(key))
        files = {*file};
    else if (!family.isEmpty())
        files = {DataFile::Vente, DataFile::Historic};
    return {tables,
            year.isEmpty() ? JournalKeys::containing(u'/' + number) : JournalKeys::beginningWith(year + u'/' + number),
            files};
}

Selection selectionOf(const TrailSubject& subject) {
    const QString key = subject.key.trimmed();
    switch (subject.kind) {
    case TrailSubject::Kind::Unit: {
        const Immatriculation unit = Immatriculation::fromText(key.section(u'/', -1)); // or as the journal names it
        if (!unit.isValid())
            throw Refusal(QStringLiteral("Immatriculation incorrecte : %1").arg(key), QStringLiteral("immat"));
        return {{&strproduit, &strconform}, JournalKeys::of(unit.century() + u'/' + unit.number())};
    }
    case TrailSubject::Kind::Article:
        return {{&strarticle, &strartlpp, &strpan}, JournalKeys::of(key)};
    case TrailSubject::Kind::Client: {
        const QString code = padded(key, 6);
        return {{&strclient, &strbl, &strtarifclt}, JournalKeys::of(code) || JournalKeys::beginningWith(code + u'/')};
    }
    case TrailSubject::Kind::Supplier:
        return {{&strfournis}, JournalKeys::of(padded(key, 6))};
    case TrailSubject::Kind::Document:
        return documents(key);
    case TrailSubject::Kind::Everything:
        break;
    }
    return {};
}

Criterion between(const QString& firstDay, const QString& lastDay) {
    const auto day = [](const QString& text, const char* option) {
        if (!isEmptyDate(text) && !dateFromText(text).isValid())
            throw Refusal(QStringLiteral("Date incorrecte : %1").arg(text), QString::fromLatin1(option));
        return sortKey(text);
    };
    Criterion days;
    if (const QString first = day(firstDay, "du"); !first.isEmpty()) days = days && strjournal.jou_dat >= first;
    const QString last = day(lastDay, "au");
    if (!last.isEmpty()) days = days && strjournal.jou_dat <= last;
    if (!last.isEmpty() && last < sortKey(firstDay))
        throw Refusal(QStringLiteral("date fin < date début"), QStringLiteral("au"));
    return days;
}

/// A stored value as the screens show it: amounts with two decimals at least.
QString spoken(const Field& field, const QString& value) {
    if (field.kind != Field::Kind::Number || value.isEmpty()) return value;
    const Decimal number = Decimal::fromText(value);
    return field.scale == Number::Money ? amountText(number) : shown(number);
}

QString changeText(const Table& table, const Field& field, const QJsonValue& value) {
    const QString title = fieldTitle(table.name, field.name) + QStringLiteral(" : ");
    if (!value.isArray()) return title + spoken(field, value.toString());
    return title + spoken(field, value[0].toString()) + QStringLiteral(" -> ") + spoken(field, value[1].toString());
}

/// A date's twin to sort by, which says nothing more to a reader.
bool isSortTwin(const Field& field) { return field.name.startsWith(u"tri_"); }

/// What an entry tells, a line a field in the order of the table.
QStringList texts(const Record& entry, const Table& table) {
    QStringList lines;
    if (entry[strjournal.jou_gen] == u"C") lines.append(QStringLiteral("Création"));
    if (entry[strjournal.jou_gen] == u"S") lines.append(QStringLiteral("Suppression"));
    const QJsonObject values = QJsonDocument::fromJson(entry[strjournal.jou_val].toUtf8()).object();
    for (const Field* field : table.fields())
        if (values.contains(field->name) && !isSortTwin(*field))
            lines.append(changeText(table, *field, values[field->name]));
    return lines;
}

void append(QList<Record>& rows, const Record& entry, const Table& table, DataFile file) {
    const QString day = entry[strjournal.jou_dat];
    QString user = entry[strjournal.jou_uti];
    if (const QString code = entry[strjournal.jou_ope]; !code.isEmpty()) user += QStringLiteral(" (%1)").arg(code);
    for (const QString& text : texts(entry, table)) {
        Record row(strhisto);
        row[strhisto.his_dat] = QStringLiteral("%1/%2/%3").arg(day.mid(6, 2), day.mid(4, 2), day.left(4));
        row[strhisto.his_heu] = entry[strjournal.jou_heu].left(8);
        row[strhisto.his_uti] = user;
        row[strhisto.his_pos] = entry[strjournal.jou_pos];
        row[strhisto.his_act] = entry[strjournal.jou_act];
        row[strhisto.his_obj] = titleIn(file, table) + u' ' + entry[strjournal.jou_cle];
        row[strhisto.his_txt] = text;
        rows.append(row);
    }
}

/// When it happened, whatever the offset of the local time: the night the clocks go back has one hour twice.
qint64 momentOf(const Record& entry) {
    const QString day = entry[strjournal.jou_dat];
    const QString text =
        QStringLiteral("%1-%2-%3T%4").arg(day.left(4), day.mid(4, 2), day.mid(6, 2)).arg(entry[strjournal.jou_heu]);
    return QDateTime::fromString(text, Qt::ISODateWithMs).toMSecsSinceEpoch();
}

/// The journalled tables of a file that a selection asks for.
QList<const Table*> asked(DataFile file, const Selection& selection) {
    if (!selection.files.isEmpty() && !selection.files.contains(file)) return {};
    QList<const Table*> tables = tablesOf(file);
    if (!tables.contains(&strjournal)) return {};
    tables.removeIf([&](const Table* table) {
        return !table->trail() || (!selection.tables.isEmpty() && !selection.tables.contains(table));
    });
    return tables;
}

} // namespace

QString subjectTitle(const TrailSubject& subject) {
    const QString family = subject.key.section(u'/', -3, -3);
    if (subject.kind != TrailSubject::Kind::Document || family.isEmpty()) return subject.key;
    const Table& table = *documents(subject.key).tables.first();
    return titleIn(fileOf(subject.key).value_or(DataFile::Vente), table) + u' ' + subject.key.section(u'/', -2);
}

QList<Record> find(const Session& session, const TrailSubject& subject, const QString& firstDay,
                   const QString& lastDay) {
    const Selection selection = selectionOf(subject);
    const Criterion days = between(firstDay, lastDay);
    struct Found {
        Record entry;
        const Table* table;
        DataFile file;
    };
    QList<Found> entries;
    for (const CatalogueEntry& entry : catalogue()) {
        const QList<const Table*> tables = asked(entry.file, selection);
        const QString path = session.path(entry.file);
        Workspace workspace;
        if (tables.isEmpty() || !workspace.has(path)) continue;
        Journal::read(workspace.open(path), selection.keys, days, [&](const Record& row) {
            for (const Table* table : tables)
                if (table->name == row[strjournal.jou_tab]) entries.append({row, table, entry.file});
        });
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Found& a, const Found& b) { return momentOf(a.entry) < momentOf(b.entry); });
    QList<Record> rows;
    for (const auto& [entry, table, file] : entries) append(rows, entry, *table, file);
    return rows;
}

} // namespace molven::record_trail
