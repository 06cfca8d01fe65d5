#pragma once

#include "data/record.h"
#include "data/schema.h"
#include "shell/session.h"

#include <QDate>
#include <QList>

namespace molven {

/// What is recalled: a lot, a supplier's reference, or an article received between two dates ("dd/mm/yyyy"). The parts
/// given narrow each other.
struct RecallQuery {
    QString lot;
    QString supplierReference;
    QString reference;
    QString firstDate, lastDate;

    bool operator==(const RecallQuery&) const = default;
};

/// The units of a recall: where each is now and, when it was laid, in whom, by whom, where and on which paper. Never in
/// a file: a list made for each enquiry.
struct RecalledUnits : Table {
    using Table::Table;
    Text rap_imm{this, "rap_imm", 8};   ///< immatriculation
    Text rap_ref{this, "rap_ref", 13};  ///< article
    Text rap_lot{this, "rap_lot", 20};  ///< lot
    Text rap_per{this, "rap_per", 7};   ///< expiry
    Text rap_etat{this, "rap_etat", 1}; ///< state of the unit
    Text rap_dep{this, "rap_dep", 6};   ///< depot
    Text rap_clt{this, "rap_clt", 6};   ///< hospital that laid or holds it, empty at the main depot
    Label rap_nom{this, "rap_nom"};     ///< its name
    Label rap_pat{this, "rap_pat"};     ///< patient
    Label rap_chr{this, "rap_chr"};     ///< surgeon
    Text rap_dat{this, "rap_dat", 10};  ///< date of the implantation, or of the last document
    Text rap_doc{this, "rap_doc", 6};   ///< its number
    Label rap_lieu{this, "rap_lieu"};   ///< situation in words
    Text rap_arc{this, "rap_arc", 1};   ///< archived, O/N
    Label rap_li1{this, "rap_li1"};     ///< designation
};
inline const RecalledUnits strrappel{"strrappel"};

namespace recall {

/// Every unit concerned, current and archived together, by holder then immatriculation. Throws Refusal when nothing
/// is asked, a date is none, or no unit is found.
QList<Record> find(const Session& session, const RecallQuery& query);

/// File name of the letter to a hospital: "RAPPEL-000001-LOT 12-20260315.pdf", with the first of lot, supplier's
/// reference and article that is given. What no file name can hold becomes "_".
QString letterName(const RecallQuery& query, const QString& hospital, const QDate& day);
/// Subject of the letters and of the slips that come back: "RAPPEL DU LOT LOT 12", "RAPPEL DE L'ARTICLE HIP RECU DU
/// ...".
QString letterSubject(const RecallQuery& query);
/// What is recalled, in words.
QString words(const RecallQuery& query);
/// Who has a unit, in words: its hospital, the main depot, a set, its supplier.
QString holder(const Record& unit);
/// Its state in words, with "archivé" behind that of an archived one.
QString stateWords(const Record& unit);

} // namespace recall
} // namespace molven
