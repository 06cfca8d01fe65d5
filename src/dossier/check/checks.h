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
extern const Kind File, Indexes, Journal, Codes, Papers, Notes, Totals, WaitingTotals, Amounts, Units, Quantities,
    WaitingQuantities, Movements, Patients, Sets, Counts, Entries, Conformity, Values, Foreign, Altered, AlteredSums,
    Added, Removed;
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
    QString file, path, year, number, client, date, patient, depot, invoice;
    bool isTransferred = false;
    QString from = {}, renewal = {}; ///< of a transfer note: depot of departure, number of the note that renewed it

    QString name() const { return family->name + u' ' + number; }
    Place place() const { return {path, &family->headers, year + u'/' + number}; }
};

/// What a line says of its unit.
struct UnitLine {
    const Paper* paper;
    QString reference, depot, identification, note;
    bool takesBack;
    QString serial, sterilisation, sterilised, expiry; ///< empty on lines of old
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

/// A database file of the dossier, in one of its folders.
struct DossierFile {
    const CatalogueEntry* entry;
    QString path;
};

/// What a file tells by itself: whether the engine finds it sound, its tables, its fields.
void checkFile(const DossierFile& file, Faults& faults);
void checkNotes(const Papers& papers, Faults& faults);
/// Proformas, and the second book of invoices.
void checkProformas(references::Files& files, const Papers& papers, Faults& faults);
/// Transfer notes and the ones that renewed them.
void checkRenewals(const Papers& papers, Faults& faults);
void checkUnits(references::Files& files, const Papers& papers, Faults& faults);
void checkQuantities(references::Files& files, Faults& faults);
/// Movements of the articles kept by quantity, and the stock that they and the documents of these files leave.
void checkMovements(references::Files& files, const Session& session, Faults& faults);
void checkSets(references::Files& files, Faults& faults);
/// Counts of depots, their units and the documents that settled them.
void checkCounts(references::Files& files, const Papers& papers, Faults& faults);
/// Entries of the sales journal and the documents that they were made from.
void checkEntries(references::Files& files, const Session& session, Faults& faults);
/// Dates and immatriculations that are none.
void checkUnitValues(const QString& fileName, const Record& unit, Faults& faults);
void checkValues(references::Files& files, Faults& faults);
/// Journals that were altered, and records that are not as the journals say: changed, added or removed by something
/// else than the program.
void checkJournals(const QList<DossierFile>& files, Faults& faults);

/// The conformity history of every unit, current or archived.
class Conformities {
public:
    explicit Conformities(Database molven);
    /// What of a unit of that file does not agree with its history; empty when all does. To be asked once a unit.
    QString faultOf(Database file, const Record& unit);
    /// Histories of units that were not asked for.
    void tellLeft(Faults& faults) const;

private:
    struct History {
        qint64 changes = 0;
        QString code, cause; ///< the latest
    };
    QString fileName_;
    QHash<QString, History> histories_; ///< by century and immatriculation
};

/// What last changed a field of a unit, as the journal of its file tells it; nothing when it was never changed.
std::optional<QString> lastDeed(Database file, const Record& unit, const Field& field);

/// Whether repair() writes that field of a table.
bool isMended(const Table& table, const Field& field);
/// Totals and counts that rest on what another fault puts in doubt are not to be mended: gives their faults the kind
/// that waits.
void holdBack(Faults& faults);

/// Units of an article that its quantity may count.
struct StockCount {
    qint64 unsold = 0; ///< not invoiced
    qint64 away = 0;   ///< of these, out in a set at a client: a recount counts them, the sending of a set does not
    bool allows(const Decimal& quantity) const {
        return quantity >= Decimal(static_cast<long long>(unsold - away)) &&
               quantity <= Decimal(static_cast<long long>(unsold)) && quantity == quantity.rounded(0);
    }
};
/// By reference in upper case.
QHash<QString, StockCount> unitsInStock(Database molven);

} // namespace molven::check
