#include "ui/unit_marks.h"

#include "reference/parameters.h"
#include "stock/unit_tables.h"
#include "stock/units.h"

namespace molven {

namespace {

using style::Tone;

CellMark markOf(const QString& unitState) {
    if (unitState == state::InStock) return {QStringLiteral("En stock"), Tone::Good, {}};
    if (unitState == state::Delivered) return {QStringLiteral("Livrée"), Tone::Away, {}};
    if (unitState == state::Sold) return {QStringLiteral("Vendue"), Tone::Done, {}};
    if (unitState == state::InSet) return {QStringLiteral("En ancillaire"), Tone::Away, {}};
    return {};
}

/// What is wrong with a unit that can still be implanted comes before where it is; the tip says both.
CellMark markOf(const Record& unit) {
    const CellMark place = markOf(QString(unit[strproduit.tes_vte]));
    const QString expiry = unit[strproduit.dat_per];
    if (place.word.isEmpty() || unit[strproduit.tes_vte] == state::Sold) return place;
    if (unit[strproduit.fab_con] == list::Scrapped) return {QStringLiteral("Rebutée"), Tone::Alarm, place.word};
    switch (units::expiryOf(unit)) {
    case units::Expiry::Past:
        return {QStringLiteral("Périmée"), Tone::Alarm, place.word + QStringLiteral(", périmée depuis ") + expiry};
    case units::Expiry::Soon:
        return {QStringLiteral("Périme bientôt"), Tone::Warning, place.word + QStringLiteral(", jusqu'à ") + expiry};
    case units::Expiry::None:
    case units::Expiry::Good:
        break;
    }
    return place;
}

GridColumn column(const Text& state, const std::function<CellMark(const Record&)>& mark) {
    return {&state, QStringLiteral("Etat"), 100, {}, mark};
}

CellMark expiryMark(const QString& expiry) {
    Record unit(strproduit);
    unit[strproduit.dat_per] = expiry;
    switch (units::expiryOf(unit)) {
    case units::Expiry::Past:
        return {expiry, Tone::Alarm, QStringLiteral("Périmé")};
    case units::Expiry::Soon:
        return {expiry, Tone::Warning, QStringLiteral("Périme bientôt")};
    case units::Expiry::None:
    case units::Expiry::Good:
        break;
    }
    return {};
}

} // namespace

GridColumn expiryColumn(const Text& expiry) {
    return {&expiry, QStringLiteral("Péremption"), 95, {}, [&expiry](const Record& row) {
                return expiryMark(row.value(expiry));
            }};
}

GridColumn unitStateColumn() {
    return column(strproduit.tes_vte, [](const Record& unit) { return markOf(unit); });
}

GridColumn stateColumn(const Text& state) {
    return column(state, [&state](const Record& row) { return markOf(row.value(state)); });
}

} // namespace molven
