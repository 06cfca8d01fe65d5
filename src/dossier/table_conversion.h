#pragma once

#include "data/database.h"
#include "data/jet_file.h"
#include "dossier/conversion.h"

#include <map>

namespace molven::conversion {

/// Reads one table of a Jet file into the table of the same name here, in the place of what it holds.
class TableConversion {
public:
    TableConversion(const JetFile& source, const QString& name, Database target, const Table& table);

    /// All of the table or nothing. Throws DataError, and Refusal when it was stopped.
    Converted run(const Progress& progress);
    /// Fields that the table does not know, and values that were not taken as they were.
    QStringList notices() const;

private:
    void take(const QStringList& values);
    void give(Record& record, const Field& field, const QString& value);
    QStringList differingSums();

    const JetFile& source_;
    const QString name_;
    Database target_;
    const Table& table_;
    QList<JetFile::Column> columns_;
    QList<const Field*> fields_;        ///< of each column; null for one that is not known
    QHash<const Field*, Decimal> sums_; ///< of what was read
    std::map<QString, qint64> unknown_; ///< columns that are not known, and how many records hold something there
    QMap<QString, qint64> changed_;     ///< what was changed of values, and how often
};

} // namespace molven::conversion
