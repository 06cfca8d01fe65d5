#include "ui/listing_form.h"

#include "data/collation.h"
#include "data/format.h"
#include "ui/edit.h"
#include "ui/printed_list.h"
#include "ui/style.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

void ListingForm::build(const Listing& listing) {
    listing_.emplace(listing);
    const auto bound = [this](const QString& name) {
        auto* edit = new Edit(this);
        edit->setObjectName(name);
        edit->setMaxLength(listing_->range.size);
        edit->setFixedWidth(style::boxWidth(listing_->range.size));
        if (listing_->digits > 0) onLeft(edit, [this, edit] { edit->put(padded(edit->text(), listing_->digits)); });
        return edit;
    };
    first_ = bound(QStringLiteral("txtdeb"));
    last_ = bound(QStringLiteral("txtfin"));
    orders_ = new QComboBox(this);
    orders_->setObjectName(QStringLiteral("Cmbtri"));
    for (const ListingOrder& order : listing.orders) orders_->addItem(order.caption);
    grid_ = new Grid(QStringLiteral("DBGrid1"), listing.columns, this);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("Label1"));
    auto* search = button(QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { select(); });
    auto* printButton = button(QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); });
    auto* quit = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    auto* criteria = new QHBoxLayout;
    criteria->addWidget(new QLabel(listing.rangeCaption + QStringLiteral(" du :"), this));
    criteria->addWidget(first_);
    criteria->addWidget(new QLabel(QStringLiteral("au :"), this));
    criteria->addWidget(last_);
    criteria->addSpacing(style::WideGap);
    criteria->addWidget(new QLabel(QStringLiteral("Tri par :"), this));
    criteria->addWidget(orders_);
    criteria->addStretch();
    criteria->addWidget(search);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(count_, 1);
    bottom->addWidget(printButton);
    bottom->addWidget(quit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(criteria);
    layout->addWidget(grid_, 1);
    layout->addLayout(bottom);
    resize(1100, 640);
    applyTitle(listing.title);
    first_->setFocus();
}

const ListingOrder& ListingForm::order() const { return listing_->orders[std::max(0, orders_->currentIndex())]; }

void ListingForm::select() {
    const QString first = first_->text().trimmed(), last = last_->text().trimmed();
    if (!first.isEmpty() && !last.isEmpty() && collation::compare(listing_->range, last, first) < 0)
        throw Refusal(QStringLiteral("N° Fin < N° Début ???"), last_->objectName());
    Criterion range;
    if (!first.isEmpty()) range = range && listing_->range >= first;
    if (!last.isEmpty()) range = range && listing_->range <= last;
    grid_->rows().setQuery([this, range](const Criterion& filter, const Order& asked) {
        return listing_->database.select(listing_->table, range && filter,
                                         asked.terms.isEmpty() ? order().order : asked);
    });
    count_->setText(QStringLiteral("Nbre sélection : %1").arg(grid_->rows().rowCount()));
    if (grid_->rows().rowCount() > 0) grid_->selectRow(0);
    grid_->setFocus();
}

void ListingForm::print() {
    select();
    if (grid_->rows().rowCount() == 0) throw Refusal(QStringLiteral("Edition vide"), first_->objectName());
    const int group = order().group ? grid_->rows().columnOf(order().group->name) : -1;
    desk().print(printedList(listing_->title, grid_->rows(), {words(), group}));
}

QString ListingForm::words() const {
    const QString first = first_->text().trimmed(), last = last_->text().trimmed();
    QStringList bounds;
    if (!first.isEmpty()) bounds.append(QStringLiteral("du : ") + first);
    if (!last.isEmpty()) bounds.append(QStringLiteral("au : ") + last);
    const QString range = bounds.isEmpty() ? QStringLiteral("tout") : listing_->rangeCaption + u' ' + bounds.join(u' ');
    return QStringLiteral("Sélection : %1   Tri par : %2").arg(range, order().caption);
}

} // namespace molven
