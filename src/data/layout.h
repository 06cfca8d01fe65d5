#pragma once

#include "data/database.h"
#include "data/progress.h"

namespace molven {

/// The layout of the database files as the declared tables state it.
class Layout {
public:
    /// Raised when the layout of the tables or what journals keep changes: older files are brought to it when they are
    /// opened.
    static constexpr int Version = 8;
    /// Makes a new file of ours with these tables, whole or not at all.
    static void create(const QString& path, const QList<const Table*>& tables);
    /// Gives a file of the catalogue the tables, columns and indexes that an earlier version did not know, and its
    /// journal an entry for each record that has none of its present fields, all or nothing; waits for another
    /// workstation that is at it. A unique index that the file's own records contradict becomes a plain one. A file of
    /// another name is left as it is. Throws DataError when the file cannot be written.
    static void upgrade(const QString& path);
    /// Whom this process shows how far upgrade() is with the records of a file: asked by the file's path where there
    /// are any, told of every thousandth. Its answers count for nothing: a file is brought up to date or not opened.
    static void showUpgrades(const std::function<Progress(const QString& path)>& shown);
    /// An index that is not as declared.
    struct IndexFault {
        const Table* table;
        QString text; ///< "index strproduit_3 absent"
    };
    static QList<IndexFault> indexFaults(const QString& path, const QList<const Table*>& tables);
    /// What a file holds besides these tables and their indexes: "trigger x", "table y".
    static QStringList foreignObjects(const QString& path, const QList<const Table*>& tables);
    /// Fields of a table that hold something else than they are for, a text in a number's place, and in how many
    /// records.
    static QList<std::pair<const Field*, qint64>> misfits(const QString& path, const Table& table);
    /// Makes the indexes of a file anew as its tables declare them, all or nothing. A unique one that the records
    /// contradict becomes a plain one.
    static void repairIndexes(const QString& path, const QList<const Table*>& tables);
    /// Takes the indexes off for a time in which very many records are written; repairIndexes() makes them again.
    static void dropIndexes(const QString& path, const QList<const Table*>& tables);

private:
    /// The indexes of a table that are as declared, and those that are not.
    struct Indexes {
        QStringList kept;
        QStringList others;
    };

    explicit Layout(Database file) : file_(file), engine_(file.engine()) {}
    Indexes indexes(const Table& table);
    void create(const Table& table);
    /// True for a table that was missing, or lacked columns.
    bool complete(const Table& table);
    void takeOver(const QList<const Table*>& tables, const QString& path);
    void completeIndexes(const Table& table);
    void createIndex(const Table& table, int number);
    void dropIndexes(const Table& table);
    QString wanted(const Table& table, int number) const;

    Database file_;
    Engine& engine_;
};

} // namespace molven
