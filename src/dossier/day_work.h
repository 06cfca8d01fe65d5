#pragma once

#include "data/database.h"
#include "sales/document_kind.h"
#include "shell/session.h"

#include <QDate>
#include <QList>

#include <functional>

/// What waits to be done in a dossier, counted from its files.
namespace molven::day_work {

constexpr int MonthsAhead = 3; ///< within which an expiry is told
constexpr int RecentDays = 7;  ///< receipts and documents of so many days are recent, a backup older than that is old
constexpr int MonthsShown = 12;

/// Documents that wait: how many, what they come to without VAT, the day "yyyymmdd" of the oldest.
struct Waiting {
    qint64 count = 0;
    Decimal amount;
    QString oldest;
};

/// Units in stock in a depot whose month of expiry is over, or lies within the months ahead.
struct ExpiringDepot {
    QString depot, name;
    qint64 past = 0, soon = 0;
};

struct Written {
    std::reference_wrapper<const DocumentKind> kind;
    qint64 count;
};

struct Figures {
    Waiting toInvoice, proformas;
    QList<ExpiringDepot> expiring; ///< the main depot first, the others by code
    qint64 depotsUnder = 0, unitsLacking = 0;
    qint64 setsOut = 0, setsPartial = 0;
    qint64 withoutPatient = 0;           ///< units sold
    qint64 received = 0;                 ///< units of the recent days,
    QString firstReceived, lastReceived; ///< and the first and the last of them
    QList<Written> written;              ///< documents of the recent days, by kind; none of which there are none
    QDate backup;                        ///< invalid when the program knows of none
    QList<Decimal> turnover;             ///< by month, the present one last
    QList<Decimal> turnoverAgo;          ///< of the same months a year before
};

QDate firstRecentDay(const QDate& today);
/// "mm/yyyy", the last that is soon.
QString lastMonthAhead(const QDate& today);
/// The condition on the documents that were neither invoiced nor, of proformas, delivered.
Criterion stillOpen(const DocumentHeaders& table);
/// The condition on the documents of a kind written on the recent days.
Criterion writtenRecently(const DocumentKind& kind, const QDate& today);

/// Counts everything, through connections of its own that are closed again: it may run beside the windows. A file that
/// the dossier lacks counts as empty. Turnover is what invoices and credit notes in the company's currency come to
/// without VAT, archived ones too. Throws DataError, and Refusal once `goesOn` answers false.
Figures count(const Session& session, const QDate& today, const std::function<bool()>& goesOn = {});

/// Notices that a file of the figures was written by any other connection, of this workstation or of another.
class Changes {
public:
    explicit Changes(const Session& session);
    /// Whether that happened since it was last asked.
    bool happened();

private:
    qint64 marks();

    Workspace workspace_;
    QList<Database> files_;
    qint64 seen_ = 0;
};

} // namespace molven::day_work
