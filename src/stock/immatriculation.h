#pragma once

#include "data/database.h"
#include "shell/other_folders.h"
#include "stock/unit_tables.h"

#include <QDate>

#include <memory>

namespace molven {

/// The files that hold units: the current ones, and the archived ones, whose numbers stay theirs for ever.
struct UnitFiles {
    Database molven;
    QList<Database> archives;                        ///< the user's own, and those of the dossier's other folders
    std::shared_ptr<const OtherFolders> opened = {}; ///< what reads the latter

    QList<Database> all() const { return QList<Database>{molven} + archives; }
};
/// The current units and the user's own archive in this workspace.
UnitFiles openUnitFiles(Workspace& workspace, const Session& session);

/// The registration key of a unit: YYMM of its receipt and a 4-digit sequence, with the century beside it.
class Immatriculation {
public:
    static constexpr int LastOfMonth = 9999;
    /// Characters that a box of an immatriculation takes: another code scanned into it is refused whole, never cut to
    /// the number of a unit.
    static constexpr int LongestScan = 60;

    /// Pads a typed number to 8 digits; its century is "20" below "90", "19" from there on.
    static Immatriculation fromText(const QString& typed);
    /// As fromText(), of this century whatever its first digits.
    static Immatriculation ofThisCentury(const QString& typed) {
        return {fromText(typed).number_, QStringLiteral("20")};
    }
    /// Numbers the next `quantity` units received that day; drawn inside the caller's write transaction, after the last
    /// of the month, archived or not. One installation, whose data folder ends with "quilde/", numbers with the first
    /// year digit raised by one. Throws Refusal when the month would pass 9999, and
    /// for a month whose numbers would be read as those of the last century.
    static Immatriculation next(UnitFiles files, const QDate& receipt, int quantity = 1);

    /// The number that a user imposes on the first of `quantity` units, none of which may exist, archived or not.
    /// Throws Refusal.
    static Immatriculation imposed(UnitFiles files, const QString& typed, int quantity = 1);

    QString number() const { return number_; }
    QString century() const { return century_; }
    bool isValid() const;
    /// The one `step` places further in the same month.
    Immatriculation plus(int step) const;
    /// The condition that finds the unit.
    Criterion criterion() const { return strproduit.pro_ann == century_ && strproduit.imm_art == number_; }

private:
    Immatriculation(const QString& number, const QString& century) : number_(number), century_(century) {}
    QString number_;
    QString century_;
};

} // namespace molven
