#include "dossier/check/checks.h"

#include "stock/unit_deeds.h"
#include "stock/units.h"

namespace molven::check {

Conformities::Conformities(Database molven) : fileName_(catalogueEntry(DataFile::Molven).name) {
    for (const Record& change : molven.select(strconform)) {
        History& history = histories_[change[strconform.conf_ann] + change[strconform.conf_imm]];
        ++history.changes;
        history.code = change[strconform.conf_typ];
        history.cause = change[strconform.conf_cau];
    }
}

QString Conformities::faultOf(Database file, const Record& unit) {
    const History history = histories_.take(unit[strproduit.pro_ann] + unit[strproduit.imm_art]);
    const QString counted = unit[strproduit.num_conf];
    if (!counted.isEmpty() && counted.toLongLong() != history.changes)
        return QStringLiteral("%1 changements de conformité pour num_conf = %2").arg(history.changes).arg(counted);
    const QString code = unit[strproduit.fab_con], cause = unit[strproduit.fab_cau];
    if (history.changes == 0 || (code == history.code && cause == history.cause)) return {};
    if (lastDeed(file, unit, strproduit.fab_con) == units::CorrectionDeed) return {};
    return QStringLiteral("conformité « %1 », « %2 » dans son historique")
        .arg((code + u' ' + cause).trimmed(), (history.code + u' ' + history.cause).trimmed());
}

void Conformities::tellLeft(Faults& faults) const {
    for (auto history = histories_.begin(); history != histories_.end(); ++history)
        faults.append({fileName_, history.key(),
                       QStringLiteral("changements de conformité d'une immatriculation absente"), &kind::Conformity});
}

} // namespace molven::check
