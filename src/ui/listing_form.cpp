#include "ui/listing_form.h"

#include "data/collation.h"
#include "data/errors.h"
#include "ui/printed_list.h"

namespace molven {

void ListingForm::build(const Listing& listing) {
    listing_.emplace(listing);
    CriterionBox bound{.name = QStringLiteral("txtdeb"),
                       .caption = listing.rangeCaption + QStringLiteral(" du :"),
                       .characters = listing.range.size,
                       .code = listing.kind,
                       .isBound = true,
                       .digits = listing.digits};
    QList<CriterionBox> boxes{bound};
    bound.name = QStringLiteral("txtfin");
    bound.caption = QStringLiteral("au :");
    boxes.append(bound);
    QStringList orders;
    for (const ListingOrder& order : listing.orders) orders.append(order.caption);
    boxes.append({.name = QStringLiteral("Cmbtri"), .caption = QStringLiteral("Tri par :"), .options = orders});
    SelectionForm::build(
        {.title = listing.title,
         .criteria = boxes,
         .list = listing.columns,
         .searches = {{QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { select(); }}},
         .deeds = {{QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }}},
         .files = {{DataFile::Molven, listing.database}},
         .count = QStringLiteral("Label1"),
         .size = {1100, 640}});
}

const ListingOrder& ListingForm::order() const { return listing_->orders[criteria().choice(QStringLiteral("Cmbtri"))]; }

void ListingForm::select() {
    clearSelection();
    if (!first().isEmpty() && !last().isEmpty() && collation::compare(listing_->range, last(), first()) < 0)
        throw Refusal(QStringLiteral("N° Fin < N° Début ???"), QStringLiteral("txtfin"));
    Criterion range;
    if (!first().isEmpty()) range = range && listing_->range >= first();
    if (!last().isEmpty()) range = range && listing_->range <= last();
    showRows([this, range](const Criterion& filter, const Order& asked) {
        return listing_->database.select(listing_->table, range && filter, asked.orElse(order().order));
    });
}

void ListingForm::print() {
    select();
    if (list().rows().rowCount() == 0) throw Refusal(QStringLiteral("Edition vide"), QStringLiteral("txtdeb"));
    const int group = order().group ? list().rows().columnOf(order().group->name) : -1;
    desk().print(printedList(listing_->title, list().rows(), {asked(), group}));
}

QString ListingForm::asked() const {
    QStringList bounds;
    if (!first().isEmpty()) bounds.append(QStringLiteral("du : ") + first());
    if (!last().isEmpty()) bounds.append(QStringLiteral("au : ") + last());
    const QString range = bounds.isEmpty() ? QStringLiteral("tout") : listing_->rangeCaption + u' ' + bounds.join(u' ');
    return QStringLiteral("Sélection : %1   Tri par : %2").arg(range, order().caption);
}

} // namespace molven
