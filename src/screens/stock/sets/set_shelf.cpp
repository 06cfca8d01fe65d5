#include "screens/stock/sets/set_shelf.h"

#include "data/format.h"
#include "screens/stock/sets/set_columns.h"
#include "screens/stock/sets/set_trays.h"
#include "ui/access_keys.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace molven {

SetShelf::SetShelf(Form& form, set_journeys::Files& files)
    : QWidget(&form),
      form_(form),
      files_(files),
      sets_(new Grid(QStringLiteral("DBGrid3"), set_columns::ofOneType(), this)),
      title_(new QLabel(this)),
      units_(new Grid(QStringLiteral("DBGrid4"), set_columns::contents(), this)),
      trays_(new QStackedWidget(this)),
      filling_(new SetFilling(form, files)),
      sending_(new SetSending(form, files)),
      returning_(new SetReturning(form, files)) {
    title_->setObjectName(QStringLiteral("lblanc"));
    title_->setTextFormat(Qt::PlainText);
    style::makeHeading(*title_);
    sets_->setAccessibleName(QStringLiteral("Ancillaires"));
    units_->setAccessibleName(QStringLiteral("Unités de l'ancillaire"));
    sets_->becameCurrent = [this](const Record& set) {
        const QString serial = set[stretatanc.stk_anc_imm];
        if (serial == serial_) return;
        if (!mayLeaveTray()) {
            Record kept(stretatanc);
            kept[stretatanc.stk_anc_imm] = serial_;
            return sets_->followRecord(kept, {&stretatanc.stk_anc_imm});
        }
        leaveTray();
        serial_ = serial;
        showContents();
    };
    units_->chosen = [this](const Record& unit) {
        if (trays_->currentWidget() == returning_ && trays_->isVisible())
            returning_->toggle(unit[strcontenu.stk_imm_art]);
    };
    buildTrays();
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->addWidget(sets_, 2);
    layout->addLayout(buttons());
    layout->addWidget(title_);
    layout->addWidget(units_, 3);
    layout->addWidget(trays_, 3);
    tabThrough(tabStopsOf(*layout));
}

void SetShelf::buildTrays() {
    for (SetTray* tray :
         {static_cast<SetTray*>(filling_), static_cast<SetTray*>(sending_), static_cast<SetTray*>(returning_)}) {
        trays_->addWidget(tray);
        tray->left = [this] { leaveTray(); };
        tray->written = [this] { refresh(serial_); };
    }
    returning_->ticked = [this] { showContents(); };
    trays_->hide();
}

QPushButton* SetShelf::deed(const QString& name, const QString& caption, const std::function<void()>& handler) {
    return form_.button(name, caption, [this, handler] {
        try {
            handler();
        } catch (const Refusal&) {
            refresh(serial_);
            throw;
        }
    });
}

QLayout* SetShelf::buttons() {
    auto* row = new QHBoxLayout;
    for (QPushButton* made :
         {deed(QStringLiteral("cmdstkajout"), QStringLiteral("Nouvel ancillai&re"), [this] { add(); }),
          deed(QStringLiteral("cmdremplir"), QStringLiteral("Remp&lir"), [this] { fill(); }),
          deed(QStringLiteral("cmdretirer"), QStringLiteral("Re&tirer l'unité"), [this] { takeOut(); }),
          deed(QStringLiteral("cmdstksup"), QStringLiteral("Su&pprimer l'ancillaire"), [this] { remove(); }),
          deed(QStringLiteral("cmdbt"), QStringLiteral("&Bon de transfert"), [this] { startSending(); }),
          deed(QStringLiteral("cmdretour"), QStringLiteral("Reto&ur"), [this] { startReturn(); })})
        row->addWidget(made);
    row->addStretch();
    return row;
}

void SetShelf::show(const QString& type) {
    type_ = type;
    leaveTray();
    refresh({});
}

void SetShelf::follow(const QString& component) {
    component_ = component;
    if (trays_->isVisible() && trays_->currentWidget() == filling_) filling_->offer(component);
}

bool SetShelf::hasUnsavedWork() const {
    const auto* tray = static_cast<SetTray*>(trays_->currentWidget());
    return trays_->isVisible() && tray->hasUnsavedWork();
}

/// Reads the sets again and shows that one, the first when there is no such.
void SetShelf::refresh(const QString& serial) {
    const QList<Record> rows =
        type_.isEmpty() ? QList<Record>() : set_overview::rows(files_.notes.molven, files_.ancillaire, type_);
    sets_->rows().setRecords(rows);
    Record wanted(stretatanc);
    wanted[stretatanc.stk_anc_imm] = serial;
    const int row = std::max(0, sets_->rows().rowOf(wanted, {&stretatanc.stk_anc_imm}));
    const auto found = sets_->rows().record(row);
    serial_ = found ? QString((*found)[stretatanc.stk_anc_imm]) : QString();
    if (found) sets_->followRecord(*found, {&stretatanc.stk_anc_imm});
    showContents();
}

void SetShelf::showContents() {
    const bool returns = trays_->isVisible() && trays_->currentWidget() == returning_;
    const auto current = units_->current();
    QList<Record> rows;
    if (!serial_.isEmpty()) rows = set_overview::contents(files_.notes.molven, files_.ancillaire, serial_);
    for (Record& unit : rows)
        unit[strcontenu.eta_ret] =
            returning_->isBack(unit.value(strcontenu.stk_imm_art)) ? set_columns::CameBack : set_columns::Used;
    units_->setColumns(returns ? set_columns::returning() : set_columns::contents());
    units_->rows().setRecords(rows);
    if (current) units_->followRecord(*current, {&strcontenu.stk_imm_art});
    const auto row = sets_->current();
    if (serial_.isEmpty() || !row) return title_->setText(QStringLiteral("Aucun ancillaire de ce type"));
    const Record& set = *row;
    title_->setText(QStringLiteral("Ancillaire %1 : %2 sur %3 — %4")
                        .arg(serial_, counted(set[stretatanc.eta_nb].toInteger(), QStringLiteral("unité")))
                        .arg(set[stretatanc.eta_tot].toInteger())
                        .arg(set[stretatanc.eta_com]));
}

QString SetShelf::requireSet() const {
    if (serial_.isEmpty()) throw Refusal(QStringLiteral("Choisir d'abord un ancillaire"));
    return serial_;
}

void SetShelf::open(SetTray* tray) {
    trays_->setCurrentWidget(tray);
    trays_->show();
    trayOpened(tray);
}

/// Asks before what was ticked or typed in a tray goes.
bool SetShelf::mayLeaveTray() { return !hasUnsavedWork() || form_.givesUp(title_->text()); }

void SetShelf::leaveTray() {
    if (!trays_->isVisible()) return;
    trays_->hide();
    showContents();
    trayOpened(nullptr);
}

void SetShelf::add() {
    if (!mayLeaveTray()) return;
    leaveTray();
    const QString serial = ancillary_sets::create(files_.ancillaire, type_);
    refresh(serial);
    changed();
}

/// Opens the filling; once it is open, places the unit that is current there.
void SetShelf::fill() {
    if (trays_->isVisible() && trays_->currentWidget() == filling_) return filling_->place();
    const QString serial = requireSet();
    ancillary_sets::requireAtHome(ancillary_sets::header(files_.ancillaire, serial));
    if (!mayLeaveTray()) return;
    leaveTray();
    open(filling_);
    filling_->open(serial, component_);
}

void SetShelf::takeOut() {
    const QString serial = requireSet();
    const auto unit = units_->current();
    if (!unit) throw Refusal(QStringLiteral("Choisir d'abord une unité de l'ancillaire"));
    const QString number = (*unit)[strcontenu.stk_imm_art];
    ancillary_sets::requireUnitAtHome(ancillary_sets::header(files_.ancillaire, serial));
    if (!form_.prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer le produit N° ") + number,
                                QStringLiteral("%1, ancillaire %2").arg((*unit)[strcontenu.stk_lib_art], serial)))
        return;
    ancillary_sets::takeOut(files_.sets(), serial, number);
    leaveTray();
    refresh(serial);
}

void SetShelf::remove() {
    const QString serial = requireSet();
    ancillary_sets::requireAtHome(ancillary_sets::header(files_.ancillaire, serial));
    if (!form_.prompt().confirm(QStringLiteral("Etes-vous sûr de vouloir supprimer l'ancillaire N° %1? ").arg(serial),
                                title_->text()))
        return;
    ancillary_sets::remove(files_.sets(), serial);
    leaveTray();
    refresh({});
    changed();
}

void SetShelf::startSending() {
    const QString serial = requireSet();
    set_journeys::requireSendable(files_, serial);
    if (!mayLeaveTray()) return;
    leaveTray();
    open(sending_);
    sending_->open(serial);
}

void SetShelf::startReturn() {
    const QString serial = requireSet();
    const Record set = ancillary_sets::header(files_.ancillaire, serial);
    set_journeys::requireAway(set);
    if (!mayLeaveTray()) return;
    leaveTray();
    QStringList units;
    for (const Record& line : ancillary_sets::lines(files_.ancillaire, serial))
        units.append(line[strstock.stk_imm_art]);
    open(returning_);
    returning_->open(set, units);
}

} // namespace molven
