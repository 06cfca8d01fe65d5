#include "data/layout.h"

#include "data/catalogue.h"
#include "data/dialect.h"
#include "data/engine.h"
#include "data/journal.h"

#include <QDir>
#include <QHash>

namespace molven {

namespace {

/// From this version on the journal of a file has an entry for each of its records.
constexpr qint64 FirstWithEntries = 3;

/// Indexes are numbered from 1 in the order of their declaration.
QString indexName(const Table& table, int number) {
    return QStringLiteral("%1_%2").arg(table.name, QString::number(number));
}

std::function<Progress(const QString& path)>& shownUpgrades() {
    static std::function<Progress(const QString& path)> shown;
    return shown;
}

} // namespace

void Layout::showUpgrades(const std::function<Progress(const QString& path)>& shown) { shownUpgrades() = shown; }

void Layout::create(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    Layout layout(workspace.openAsIs(path, Engine::Opening::New));
    Transaction transaction(workspace);
    layout.engine_.markAsOurs(layout.file_.schema(), Version);
    for (const Table* table : tables) layout.create(*table);
    transaction.commit();
}

void Layout::upgrade(const QString& path) {
    const auto file = dataFileAt(path);
    if (!file) return;
    try {
        Workspace workspace;
        Layout layout(workspace.openAsIs(path, Engine::Opening::Existing));
        Transaction transaction(workspace, QStringLiteral("Reprise"));
        // Another workstation may have done it while this one waited.
        const QString& schema = layout.file_.schema();
        const qint64 version = layout.engine_.version(schema).value_or(0);
        if (version >= Version) return;
        QList<const Table*> changed; // other records have the entries that they need
        for (const Table* table : tablesOf(*file))
            if (layout.complete(*table) || version < FirstWithEntries) changed.append(table);
        layout.takeOver(changed, path);
        layout.engine_.markAsOurs(schema, Version);
        transaction.commit();
    } catch (const DataError& error) {
        throw DataError(error.number,
                        QStringLiteral("Le fichier '%1' vient d'une version précédente du programme et n'a pas pu "
                                       "être mis à jour : %2")
                            .arg(QDir::toNativeSeparators(path), error.description),
                        error.records);
    }
}

void Layout::takeOver(const QList<const Table*>& tables, const QString& path) {
    constexpr qint64 Told = 1000;
    qint64 total = 0, done = 0;
    for (const Table* table : tables)
        if (table->trail()) total += file_.count(*table);
    const Progress progress = shownUpgrades() && total > 0 ? shownUpgrades()(path) : Progress();
    const auto told = [&] {
        ++done;
        if (progress && (done % Told == 0 || done == total)) progress(static_cast<int>(done), static_cast<int>(total));
    };
    for (const Table* table : tables)
        Journal::takeOver({file_.workspace(), engine_, file_.qualified(*table), *table}, told);
}

void Layout::create(const Table& table) {
    QStringList columns = engine_.dialect().ownColumns();
    for (const Field* field : table.fields()) columns.append(engine_.dialect().definition(*field));
    engine_.run(QStringLiteral("create table %1 (%2)").arg(file_.qualified(table), columns.join(u',')));
    for (int number = 1; number <= table.indexes().size(); ++number) createIndex(table, number);
}

bool Layout::complete(const Table& table) {
    const QStringList columns = file_.columns(table);
    if (columns.isEmpty()) {
        create(table);
        return true;
    }
    bool isWider = false;
    for (const Field* field : table.fields()) {
        if (columns.contains(field->name, Qt::CaseInsensitive)) continue;
        engine_.run(QStringLiteral("alter table %1 add column %2")
                        .arg(file_.qualified(table), engine_.dialect().definition(*field)));
        isWider = true;
    }
    completeIndexes(table);
    return isWider;
}

QString Layout::wanted(const Table& table, int number) const {
    const Index& index = *table.indexes()[number - 1];
    return engine_.indexDefinition(file_.schema(), table, index, indexName(table, number), index.uniqueness);
}

Layout::Indexes Layout::indexes(const Table& table) {
    QHash<QString, QString> declared;
    for (int number = 1; number <= table.indexes().size(); ++number)
        declared.insert(indexName(table, number), wanted(table, number));
    Indexes found;
    for (const auto& [name, definition] : engine_.indexes(file_.schema(), table)) {
        const bool same = declared.value(name).compare(definition, Qt::CaseInsensitive) == 0;
        (same ? found.kept : found.others).append(name);
    }
    return found;
}

void Layout::completeIndexes(const Table& table) {
    const Indexes found = indexes(table);
    for (const QString& name : found.others) engine_.dropIndex(file_.schema(), name);
    for (int number = 1; number <= table.indexes().size(); ++number)
        if (!found.kept.contains(indexName(table, number))) createIndex(table, number);
}

QList<Layout::IndexFault> Layout::indexFaults(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    Layout layout(workspace.openAsIs(path, Engine::Opening::Existing));
    QList<IndexFault> faults;
    for (const Table* table : tables) {
        const Indexes found = layout.indexes(*table);
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
    const Database file = workspace.openAsIs(path, Engine::Opening::Existing);
    return file.engine().foreignObjects(file.schema(), tables);
}

QList<std::pair<const Field*, qint64>> Layout::misfits(const QString& path, const Table& table) {
    Workspace workspace;
    const Database file = workspace.openAsIs(path, Engine::Opening::Existing);
    return file.engine().misfits(file.schema(), table);
}

void Layout::repairIndexes(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    Layout layout(workspace.openAsIs(path, Engine::Opening::Existing));
    Transaction transaction(workspace);
    for (const Table* table : tables) {
        layout.dropIndexes(*table);
        for (int number = 1; number <= table->indexes().size(); ++number) layout.createIndex(*table, number);
    }
    transaction.commit();
}

void Layout::dropIndexes(const QString& path, const QList<const Table*>& tables) {
    Workspace workspace;
    Layout layout(workspace.openAsIs(path, Engine::Opening::Existing));
    Transaction transaction(workspace);
    for (const Table* table : tables) layout.dropIndexes(*table);
    transaction.commit();
}

void Layout::dropIndexes(const Table& table) {
    const Indexes found = indexes(table);
    for (const QString& name : found.kept + found.others) engine_.dropIndex(file_.schema(), name);
}

void Layout::createIndex(const Table& table, int number) {
    const Index& index = *table.indexes()[number - 1];
    const auto make = [&](Uniqueness uniqueness) {
        Transaction alone(file_.workspace());
        engine_.createIndex(file_.schema(), table, index, indexName(table, number), uniqueness);
        alone.commit();
    };
    try {
        make(index.uniqueness);
    } catch (const DataError& error) {
        if ((error.number & 0xFF) != DataError::Double) throw;
        make(Uniqueness::Repeated);
    }
}

} // namespace molven
