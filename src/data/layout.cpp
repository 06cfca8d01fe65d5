#include "data/layout.h"

#include "data/catalogue.h"
#include "data/journal.h"
#include "data/sqlite_engine.h"
#include "data/workspace.h"

#include <QDir>
#include <QHash>

#include <sqlite3.h>

namespace molven {

namespace {

/// From this version on the journal of a file has an entry for each of its records.
constexpr qint64 FirstWithEntries = 3;

QString indexName(const Table& table, int number) {
    return QStringLiteral("%1_%2").arg(table.name, QString::number(number));
}

/// The statement that makes a table's index; they are numbered from 1 in the order of their declaration.
QString indexSql(const Table& table, int number, Uniqueness uniqueness) {
    QStringList names;
    for (const Field* field : table.indexes()[number - 1]->fields) names.append(field->name);
    return QStringLiteral("CREATE %1INDEX %2 on %3 (%4)")
        .arg(uniqueness == Uniqueness::Unique ? QStringLiteral("UNIQUE ") : QString(), indexName(table, number),
             table.name, names.join(u','));
}

QString indexSql(const Table& table, int number) {
    return indexSql(table, number, table.indexes()[number - 1]->uniqueness);
}

} // namespace

QString Layout::definition(const Field& field) {
    switch (field.kind) {
    case Field::Kind::Number:
        return field.name + QStringLiteral(" numeric");
    case Field::Kind::Label:
        return field.name + QStringLiteral(" text not null default '' collate french");
    case Field::Kind::Code:
        break;
    }
    return field.name + QStringLiteral(" text not null default '' collate nocase");
}

void Layout::create(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    workspace.connection_ = sqlite::connect(path, sqlite::Opening::New);
    Transaction transaction(workspace);
    workspace.run(QStringLiteral("pragma application_id=%1").arg(sqlite::ApplicationId));
    workspace.run(QStringLiteral("pragma user_version=%1").arg(sqlite::SchemaVersion));
    Layout layout(workspace);
    for (const Table* table : tables) layout.create(*table);
    transaction.commit();
}

void Layout::upgrade(const QString& path) {
    const auto file = dataFileAt(path);
    if (!file) return;
    try {
        Workspace workspace;
        workspace.connection_ = sqlite::connect(path, sqlite::Opening::Existing);
        Transaction transaction(workspace, QStringLiteral("Reprise"));
        // Another workstation may have done it while this one waited.
        const qint64 version = workspace.mark(QStringLiteral("main"), "user_version");
        if (version >= sqlite::SchemaVersion) return;
        Layout layout(workspace);
        QList<const Table*> changed; // other records have the entries that they need
        for (const Table* table : tablesOf(*file))
            if (layout.complete(*table) || version < FirstWithEntries) changed.append(table);
        for (const Table* table : changed) Journal::takeOver(workspace, QStringLiteral("main.") + table->name, *table);
        workspace.run(QStringLiteral("pragma user_version=%1").arg(sqlite::SchemaVersion));
        transaction.commit();
    } catch (const DataError& error) {
        throw DataError(error.number,
                        QStringLiteral("Le fichier '%1' vient d'une version précédente du programme et n'a pas pu "
                                       "être mis à jour : %2")
                            .arg(QDir::toNativeSeparators(path), error.description),
                        error.records);
    }
}

void Layout::create(const Table& table) {
    QStringList columns;
    for (const Field* field : table.fields()) columns.append(definition(*field));
    workspace_.run(QStringLiteral("create table %1 (%2)").arg(table.name, columns.join(u',')));
    for (int number = 1; number <= table.indexes().size(); ++number) workspace_.run(indexSql(table, number));
}

bool Layout::complete(const Table& table) {
    QStringList columns;
    Statement& rows = workspace_.run(QStringLiteral("pragma main.table_info(%1)").arg(table.name));
    while (rows.next()) columns.append(rows.text(1));
    if (columns.isEmpty()) {
        create(table);
        return true;
    }
    bool isWider = false;
    for (const Field* field : table.fields()) {
        if (columns.contains(field->name, Qt::CaseInsensitive)) continue;
        workspace_.run(QStringLiteral("alter table %1 add column %2").arg(table.name, definition(*field)));
        isWider = true;
    }
    completeIndexes(table);
    return isWider;
}

Layout::Indexes Layout::indexes(const Table& table) {
    QHash<QString, QString> wanted;
    for (int number = 1; number <= table.indexes().size(); ++number)
        wanted.insert(indexName(table, number), indexSql(table, number));
    Indexes found;
    Statement& rows = workspace_.run(
        QStringLiteral("select name,sql from main.sqlite_master where type='index' and tbl_name=?"), {table.name});
    while (rows.next()) {
        const bool same = wanted.value(rows.text(0)).compare(rows.text(1), Qt::CaseInsensitive) == 0;
        (same ? found.kept : found.others).append(rows.text(0));
    }
    return found;
}

void Layout::completeIndexes(const Table& table) {
    const Indexes found = indexes(table);
    for (const QString& name : found.others) workspace_.run(QStringLiteral("drop index \"%1\"").arg(name));
    for (int number = 1; number <= table.indexes().size(); ++number)
        if (!found.kept.contains(indexName(table, number))) createIndex(table, number);
}

QList<Layout::IndexFault> Layout::indexFaults(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    workspace.connection_ = sqlite::connect(path, sqlite::Opening::Existing);
    QList<IndexFault> faults;
    for (const Table* table : tables) {
        const Indexes found = Layout(workspace).indexes(*table);
        for (const QString& name : found.others)
            faults.append({table, QStringLiteral("index %1 autre que déclaré").arg(name)});
        for (int number = 1; number <= table->indexes().size(); ++number)
            if (const QString name = indexName(*table, number); !(found.kept + found.others).contains(name))
                faults.append({table, QStringLiteral("index %1 absent").arg(name)});
    }
    return faults;
}

QStringList Layout::foreignObjects(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    workspace.connection_ = sqlite::connect(path, sqlite::Opening::Existing);
    QStringList own, found;
    for (const Table* table : tables) own.append(QStringLiteral("table ") + table->name);
    Statement& rows = workspace.run(QStringLiteral("select type||' '||name from main.sqlite_master where type<>'index' "
                                                   "and substr(name,1,7)<>'sqlite_' order by 1"));
    while (rows.next())
        if (!own.contains(rows.text(0), Qt::CaseInsensitive)) found.append(rows.text(0));
    return found;
}

QList<std::pair<const Field*, qint64>> Layout::misfits(const QString& path, const Table& table) {
    QStringList counts;
    for (const Field* field : table.fields())
        counts.append((field->kind == Field::Kind::Number
                           ? QStringLiteral("sum(typeof(%1) not in ('integer','real','null'))")
                           : QStringLiteral("sum(typeof(%1)<>'text')"))
                          .arg(field->name));
    Workspace workspace;
    workspace.connection_ = sqlite::connect(path, sqlite::Opening::Existing);
    QList<std::pair<const Field*, qint64>> found;
    Statement& row = workspace.run(QStringLiteral("select %1 from main.%2").arg(counts.join(u','), table.name));
    row.next();
    for (const Field* field : table.fields())
        if (const qint64 count = row.integer(field->position)) found.append({field, count});
    row.finish();
    return found;
}

void Layout::repairIndexes(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    workspace.connection_ = sqlite::connect(path, sqlite::Opening::Existing);
    Transaction transaction(workspace);
    Layout layout(workspace);
    for (const Table* table : tables) {
        layout.dropIndexes(*table);
        for (int number = 1; number <= table->indexes().size(); ++number) layout.createIndex(*table, number);
    }
    transaction.commit();
}

void Layout::dropIndexes(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    workspace.connection_ = sqlite::connect(path, sqlite::Opening::Existing);
    Transaction transaction(workspace);
    for (const Table* table : tables) Layout(workspace).dropIndexes(*table);
    transaction.commit();
}

void Layout::dropIndexes(const Table& table) {
    const Indexes found = indexes(table);
    for (const QString& name : found.kept + found.others) workspace_.run(QStringLiteral("drop index \"%1\"").arg(name));
}

void Layout::createIndex(const Table& table, int number) {
    try {
        workspace_.run(indexSql(table, number));
    } catch (const DataError& error) {
        if ((error.number & 0xFF) != SQLITE_CONSTRAINT) throw;
        workspace_.run(indexSql(table, number, Uniqueness::Repeated));
    }
}

} // namespace molven
