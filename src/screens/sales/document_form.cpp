#include "screens/sales/document_form.h"

#include "sales/documents.h"
#include "screens/sales/footer_entry.h"
#include "screens/sales/header_entry.h"
#include "screens/sales/line_entry.h"
#include "screens/sales/note_choice.h"
#include "screens/sales/scan_entry.h"
#include "screens/sales/unit_range.h"
#include "screens/shell/trail_form.h"
#include "ui/access_keys.h"
#include "ui/grid.h"
#include "ui/style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>

namespace molven {

DocumentForm::DocumentForm(Desk& desk) : DocumentForm(desk, documentKind(desk.session.mode_ecran)) {}

DocumentForm::DocumentForm(Desk& desk, const DocumentKind& kind)
    : Form(desk, layoutOf(kind).screen),
      layout_(layoutOf(kind)),
      book_(session(), kind),
      table_(kind.headers),
      entry_(*this, QStringLiteral("L'en-tête est en cours de saisie : validez-le ou annulez"),
             QStringLiteral("Aucun document n'est affiché")) {
    auto* layout = new QVBoxLayout(this);
    QLayout* deeds = buildDocumentButtons();
    layout->addLayout(deeds);
    header_ = new HeaderEntry(*this, book_, layout_);
    header_->numberTyped = [this] { displayTyped(); };
    layout->addWidget(header_);
    lines_ = new Grid(QStringLiteral("DBGrid1"), layout_.lines, this);
    layout->addWidget(lines_, 1);
    QLayout* lineDeeds = buildLineButtons();
    layout->addLayout(lineDeeds);
    buildTray();
    layout->addWidget(tray_);
    orderKeyboard(*deeds, *lineDeeds);
    resize(1264, 680);
    applyTitle(book_.kind().title);
    display(std::nullopt);
    offerUnfinished();
    add_->setFocus();
}

QLayout* DocumentForm::buildDocumentButtons() {
    add_ = leaveButton(QStringLiteral("CmdAjout"), QStringLiteral("&Ajouter"), [this] { startNew(); });
    auto* change = deed(QStringLiteral("CmdModifier"), QStringLiteral("&Modifier"), [this] { startChanging(); });
    validate_ = deed(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { validateHeader(); });
    auto* cancel = leaveButton(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { abandon(); });
    auto* remove = deed(QStringLiteral("Cmdsup"), QStringLiteral("&Supprimer"), [this] { removeDocument(); });
    auto* before = button(QStringLiteral("CmdPrecede"), QStringLiteral("Pré&cédent"), [this] {
        if (const auto found = documents::before(book_, requireDocument()[table_.fac_no])) leafTo(found);
    });
    auto* after = button(QStringLiteral("CmdSuivant"), QStringLiteral("S&uivant"), [this] {
        if (const auto found = documents::after(book_, requireDocument()[table_.fac_no])) leafTo(found);
    });
    auto* last =
        leaveButton(QStringLiteral("cmdLast"), QStringLiteral("De&rnier"), [this] { leafTo(documents::last(book_)); });
    auto* ofClient =
        button(QStringLiteral("Cmddoc"), QStringLiteral("&Documents du client"), [this] { pickDocument(); });
    auto* renew = deed(QStringLiteral("Cmdtransfer"), QStringLiteral("Ren&ouveler"), [this] { startRenewal(); });
    auto* deliver = deed(QStringLiteral("cmdbl"), QStringLiteral("Trans&férer en BL"), [this] { deliverProforma(); });
    auto* printButton = button(QStringLiteral("cmdedt"), QStringLiteral("&Edition"), [this] { print(); });
    quit_ = leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); });
    show(Part::Deletion, remove);
    show(Part::Printing, printButton);
    show(Part::Renewal, renew);
    show(Part::Delivery, deliver);
    entry_.add(Acts::Entering, {validate_, cancel});
    entry_.add(Acts::Idle, {add_, last});
    entry_.add(Acts::Shown, {change, remove, renew, deliver, before, after, printButton});
    kindLabel_ = new QLabel(book_.kind().label, this);
    kindLabel_->setObjectName(QStringLiteral("Label1"));
    style::makeHeading(*kindLabel_);
    auto* row = new QHBoxLayout;
    row->addWidget(kindLabel_);
    row->addSpacing(style::WideGap);
    for (QPushButton* made : {add_, change, validate_, cancel, remove, renew, deliver}) row->addWidget(made);
    row->addStretch();
    for (QPushButton* made : {before, after, last, ofClient, printButton, quit_}) row->addWidget(made);
    return row;
}

QLayout* DocumentForm::buildLineButtons() {
    addLine_ = deed(QStringLiteral("Cmdajoutlig"), QStringLiteral("A&jouter une ligne"), [this] { addLine(); });
    auto* insert = deed(QStringLiteral("Cmdinsertlig"), QStringLiteral("&Insérer"), [this] { insertLine(); });
    auto* change = deed(QStringLiteral("cmdmodiflig"), QStringLiteral("Modifier la li&gne"), [this] { changeLine(); });
    auto* remove = deed(QStringLiteral("Cmdsuplig"), QStringLiteral("Su&pprimer la ligne"), [this] { removeLine(); });
    auto* scans = deed(QStringLiteral("Cmdlecture"), QStringLiteral("Lire à la douc&hette"), [this] { openScans(); });
    auto* notes = deed(QStringLiteral("Cmdchoix"), QStringLiteral("Intégrer des &BL"), [this] { openIntegration(); });
    auto* footer = deed(QStringLiteral("Cmdvisupied"), QStringLiteral("Pied et totau&x"), [this] { openFooter(); });
    show(Part::LineChange, change);
    show(Part::Scans, scans);
    show(Part::Integration, notes);
    show(Part::Footer, footer);
    entry_.add(Acts::Open, {addLine_, insert, change, remove, scans, notes});
    entry_.add(Acts::Shown, {footer});
    total_ = new QLabel(this);
    total_->setObjectName(QStringLiteral("lbltotal"));
    auto* row = new QHBoxLayout;
    for (QPushButton* made : {addLine_, insert, change, remove, scans, notes, footer}) row->addWidget(made);
    row->addWidget(trailButton(*this, [this] {
        const Record& shown = requireDocument();
        QStringList key{table_.name, shown[table_.fac_aa], shown[table_.fac_no]};
        if (const DataFile file = book_.kind().file; file != DataFile::Vente) key.prepend(catalogueEntry(file).name);
        return TrailSubject{TrailSubject::Kind::Document, key.join(u'/')};
    }));
    row->addStretch();
    row->addWidget(total_);
    return row;
}

void DocumentForm::buildTray() {
    tray_ = new QStackedWidget(this);
    addToTray(lineEntry_ = new LineEntry(*this, book_, layout_));
    if (book_.kind().hasUnits) addToTray(unitRange_ = new UnitRange(*this, book_, layout_));
    if (layout_.has(Part::Integration)) addToTray(noteChoice_ = new NoteChoice(*this, book_));
    if (layout_.has(Part::Scans)) addToTray(scans_ = new ScanEntry(*this, book_));
    if (layout_.has(Part::Footer)) addToTray(footer_ = new FooterEntry(*this, book_));
    if (!unitRange_) return;
    lineEntry_->rangeWanted = [this](const QString& reference, const QString& first) {
        unitRange_->open(*shown(), reference, first);
        showTray(unitRange_);
    };
    unitRange_->chosen = [this](const QStringList& units) { addRange(units); };
    unitRange_->left = [this] {
        showTray(lineEntry_);
        lineEntry_->focusUnit();
    };
}

void DocumentForm::addToTray(TrayPart* part) {
    part->attempt = [this](const std::function<void()>& deed) { attempt(deed); };
    part->left = [this] { leaveTray(); };
    part->written = [this] {
        touched_ = true;
        refresh();
    };
    tray_->addWidget(part);
}

void DocumentForm::show(Part part, QPushButton* button) { button->setVisible(layout_.has(part)); }

/// What validates the header comes behind its last box, the lines behind the buttons of the document.
void DocumentForm::orderKeyboard(const QLayout& deeds, const QLayout& lineDeeds) {
    header_->setTabOrderBefore(validate_);
    QList<QWidget*> order{validate_};
    for (QPushButton* button : entry_.buttons(Acts::Entering))
        if (button != validate_) order.append(button);
    for (QWidget* button : tabStopsOf(deeds))
        if (!order.contains(button)) order.append(button);
    order.append(lines_);
    tabThrough(order + tabStopsOf(lineDeeds));
}

void DocumentForm::adapt() {
    renewal_.reset();
    header_->setOpen(entry_.state() == State::Adding     ? HeaderEntry::Open::New
                     : entry_.state() == State::Changing ? HeaderEntry::Open::Kept
                     : shown()                           ? HeaderEntry::Open::Number
                                                         : HeaderEntry::Open::Search);
    leaveTray();
}

} // namespace molven
