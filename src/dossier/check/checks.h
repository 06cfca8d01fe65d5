#pragma once

#include "data/database.h"
#include "dossier/check.h"
#include "dossier/references.h"
#include "sales/totals.h"

#include <QHash>
#include <QMap>

/// The parts of a check, each over files that the engine finds sound.
namespace molven::check {

using Faults = QList<Fault>;

namespace kind {
extern const Kind File, Indexes, Journal, Codes, Papers, Notes, Totals, Amounts, Units, Quantities, Patients, Sets,
    Values, Altered;
} // namespace kind

/// The tables of one family of documents.
struct Family {
    const DocumentHeaders& headers;
    const DocumentLines& lines;
    QString name;
    bool sells;    ///< its lines sell units or take them back
    bool isPriced; ///< its lines have prices and its headers totals
};
const QList<Family>& families();

/// A document as far as others depend on it.
struct Paper {
    const Family* family;
    QString series; ///< whose numbers it shares: each user folder has its own
    QString file, year, number, client, date, patient, depot, invoice;
    bool isTransferred = false;

    QString name() const { return family->name + u' ' + number; }
};

/// What a line says of its unit.
struct UnitLine {
    const Paper* paper;
    QString reference, depot, identification, note;
    bool takesBack = false;
};

/// Every document of the current and archived files, read once.
class Papers {
public:
    /// Tells at once what of each document does not agree with itself.
    Papers(references::Files& files, Faults& faults);

    /// Lines by immatriculation.
    const QHash<QString, QList<UnitLine>>& units() const { return units_; }
    const Paper* find(const QString& series, const Family& family, const QString& number) const;
    /// An invoice's line taken over from a delivery note.
    struct Invoiced {
        const Paper* invoice;
        QString note;
    };
    const QList<Invoiced>& invoiced() const { return invoiced_; }
    const std::map<QString, Paper>& all() const { return papers_; }

private:
    void readHeaders(const references::Files::Searched& searched, const Family& family, Faults& faults);
    /// Answers what the lines of each document come to, by its year and number.
    QHash<QString, QMap<QString, totals::VatBase>> readLines(const references::Files::Searched& searched,
                                                             const Family& family, Faults& faults);
    void checkLine(const Family& family, const Record& line, const Paper& paper, Faults& faults);

    std::map<QString, Paper> papers_; ///< by series, family and number
    QHash<QString, QList<UnitLine>> units_;
    QList<Invoiced> invoiced_;
};

void checkFile(const CatalogueEntry& entry, const QString& path, Faults& faults);
void checkNotes(const Papers& papers, Faults& faults);
void checkUnits(references::Files& files, const Papers& papers, Faults& faults);
void checkQuantities(references::Files& files, Faults& faults);
void checkSets(references::Files& files, Faults& faults);
/// Dates and immatriculations that are none.
void checkValues(references::Files& files, Faults& faults);
/// Records that no longer hold what the journal last wrote of them: changed by something else than the program.
void checkAgainstJournal(const CatalogueEntry& entry, Database file, Faults& faults);

/// Units that are not invoiced, by reference in upper case.
QHash<QString, qint64> unitsInStock(Database molven);

} // namespace molven::check
