#include "dossier/migration.h"

#include "data/database.h"
#include "data/errors.h"
#include "data/format.h"
#include "data/layout.h"
#include "data/presence.h"
#include "data/require.h"
#include "data/server_address.h"
#include "dossier/creation.h"
#include "dossier/made_files.h"
#include "dossier/staging.h"
#include "shell/folder_files.h"
#include "shell/startup.h"

#include <QDir>
#include <QFileInfo>

#include <memory>

namespace molven::migration {

namespace {

constexpr int Steps = 1000; ///< of the progress, for any number of records

/// Nobody else writes to these files while it lives; those of a folder are held by whoever asked for the copy.
class Held {
public:
    explicit Held(const QList<Move>& moves) {
        if (moves.isEmpty() || !server_address::isOne(moves.first().from)) return;
        workspace_.open(moves.first().from);
        transaction_ = std::make_unique<Transaction>(workspace_);
    }

private:
    Workspace workspace_;
    std::unique_ptr<Transaction> transaction_;
};

QList<const Number*> numbersOf(const Table& table) {
    QList<const Number*> numbers;
    for (const Field* field : table.fields())
        if (field->kind == Field::Kind::Number) numbers.append(static_cast<const Number*>(field));
    return numbers;
}

QStringList differingSums(Database from, Database to, const Table& table) {
    const QList<const Number*> numbers = numbersOf(table);
    const QList<Summary> before = from.summary(table, {}, numbers), after = to.summary(table, {}, numbers);
    QStringList differing;
    if (before.isEmpty() || after.isEmpty()) return differing;
    for (qsizetype i = 0; i < numbers.size(); ++i)
        if (const Decimal was = before.first().sums[i], is = after.first().sums[i]; was != is)
            differing.append(QStringLiteral("%1 : %2 et %3").arg(numbers[i]->name, shown(was), shown(is)));
    return differing;
}

class Copying {
public:
    Copying(const QList<Move>& moves, const Progress& progress) : progress_(progress) {
        for (const Move& move : moves) {
            Workspace workspace;
            Database from = workspace.open(move.from);
            for (const Table* table : tablesOf(move.file)) total_ += from.count(*table);
        }
    }

    QList<Moved> run(const Move& move) {
        QList<Moved> moved;
        const QList<const Table*>& tables = tablesOf(move.file);
        Layout::dropIndexes(move.to, tables);
        Workspace source, target;
        Database from = source.open(move.from), to = target.open(move.to);
        Transaction transaction(target);
        for (const Table* table : tables) {
            Moved one{.file = catalogueEntry(move.file).name, .table = table->name};
            one.read = to.takeAll(from, *table, [&](qint64 records) { tell(done_ + records); });
            done_ += one.read;
            one.stored = to.count(*table);
            one.differing = differingSums(from, to, *table);
            moved.append(one);
        }
        transaction.commit();
        Layout::repairIndexes(move.to, tables);
        return moved;
    }

private:
    void tell(qint64 records) const {
        if (progress_ && !progress_(static_cast<int>(records * Steps / std::max<qint64>(total_, 1)), Steps))
            throw Refusal(QStringLiteral("Opération abandonnée"));
    }

    const Progress& progress_;
    qint64 total_ = 0, done_ = 0;
};

/// The folder files of a new installation, and its work files.
void makeInstallation(const QString& folder, const QList<Move>& moves) {
    const QDir place(folder);
    for (const Move& move : moves) QDir().mkpath(QFileInfo(move.to).path());
    place.mkpath(QStringLiteral("tri"));
    for (const CatalogueEntry& entry : catalogue())
        if (entry.folder == Folder::Work)
            Database::create(place.filePath(QStringLiteral("tri/") + entry.name), tablesOf(entry.file));
    writeLine(place.filePath(QStringLiteral("CHEMIN.HC")), QStringLiteral("data\\"));
    writeLine(place.filePath(QStringLiteral("TRI.HC")), QStringLiteral("tri\\"));
    if (place.exists(QStringLiteral("data/gv")))
        writeLine(place.filePath(QStringLiteral("CHEMIN_GV.HC")), QStringLiteral("data\\gv\\"));
}

QList<Moved> toFolder(const Session& source, const QString& target, const Progress& progress) {
    require(!QDir(target).exists() || QDir(target).isEmpty(),
            QStringLiteral("Le dossier %1 existe déjà et n'est pas vide").arg(target), QString());
    const QFileInfo place(QDir(target).absolutePath());
    require(QDir().mkpath(place.path()), QStringLiteral("Impossible d'écrire dans %1").arg(place.path()), QString());
    Staging made(place.path(), QStringLiteral(".migration"));
    const QList<Move> files = moves(source, made.path() + QStringLiteral("/data/"));
    makeInstallation(made.path(), files);
    const QList<Moved> moved = copy(files, progress);
    made.moveTo(place.filePath());
    return moved;
}

} // namespace

QList<Move> moves(const Session& session, const QString& base) {
    QList<Move> found;
    const auto add = [&](const QString& from, const QString& to, const QList<Folder>& folders) {
        for (const CatalogueEntry& entry : catalogue())
            if (const QString path = from + entry.name; folders.contains(entry.folder) && Database::exists(path))
                found.append({entry.file, path, to + entry.name});
    };
    add(session.chemin_base, base, {Folder::Base, Folder::User, Folder::Sales});
    QStringList others =
        startup::otherFolders(session) + QStringList{session.chemin_util}; // the user's own is no other
    others.removeDuplicates();
    others.removeIf([&](const QString& folder) { return folder.isEmpty() || folder == session.chemin_base; });
    for (const QString& folder : others) {
        const QString name =
            folder == session.chemin_gv ? QStringLiteral("gv") : folder.chopped(1).section(u'/', -1).section(u'#', -1);
        add(folder, base + name + u'/', {Folder::User, Folder::Sales});
    }
    return found;
}

QList<Moved> copy(const QList<Move>& moves, const Progress& progress) {
    const Held held(moves);
    MadeFiles made;
    for (const Move& move : moves) made.create(move.to, move.file);
    Copying copying(moves, progress);
    QList<Moved> moved;
    for (const Move& move : moves) moved += copying.run(move);
    made.keep();
    return moved;
}

Outcome migrate(const QString& source, const QString& name, const QString& target, const Progress& progress) {
    const Session from = creation::open(source, name);
    const Presence alone({from.chemin_base, from.chemin_util, from.chemin_gv}, Presence::Kind::Alone);
    Outcome outcome;
    outcome.tables = server_address::isOne(target) ? copy(moves(from, server_address::folder(target)), progress)
                                                   : toFolder(from, target, progress);
    outcome.session = creation::open(target);
    return outcome;
}

} // namespace molven::migration
