#include "screens/shell/menu_form.h"

#include "data/format.h"
#include "dossier/upkeep.h"
#include "sales/renumbering.h"
#include "screens/shell/home_page.h"
#include "shell/startup.h"
#include "shell/tables.h"
#include "stock/units.h"
#include "ui/access_keys.h"
#include "ui/edit.h"
#include "ui/grid.h"
#include "ui/menu_bar.h"
#include "ui/opened_by_menu.h"
#include "ui/progress.h"
#include "ui/screen_tabs.h"
#include "ui/style.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEvent>
#include <QFile>
#include <QFrame>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QProcess>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

namespace molven {

MenuForm::MenuForm(Desk& desk) : Form(desk, QStringLiteral("Tmenu")), bar_(new MenuBar(this)) {
    buildMenu();
    buildPanels();
    resize(QApplication::primaryScreen()->availableSize().boundedTo(QSize(1280, 800)));
    if (startup::readFolders(session()))
        openDossier();
    else
        chooseDossier();
}

void MenuForm::buildMenu() {
    QList<QMenu*> parents;
    for (const MenuEntry& entry : menuTree()) {
        parents.resize(std::min<qsizetype>(parents.size(), entry.depth));
        QMenu* parent = parents.isEmpty() ? nullptr : parents.last();
        QAction* action = nullptr;
        if (entry.action == MenuAction::Submenu) {
            QMenu* menu = parent ? parent->addMenu(entry.caption) : bar_->addMenu(entry.caption);
            parents.append(menu);
            action = menu->menuAction();
        } else {
            action = parent ? parent->addAction(entry.caption) : bar_->addAction(entry.caption);
            if (parent) parent->setToolTipsVisible(true); // which say why an entry does nothing
            action->setSeparator(entry.action == MenuAction::Separator);
            connect(action, &QAction::triggered, this, [this, &entry] { guarded([&] { act(entry); }); });
        }
        action->setObjectName(entry.name);
        if (entry.depth == 0) topLevel_.append(action);
    }
}

QFrame* MenuForm::panel(const QString& name, const QString& caption, QLabel*& captionLabel) {
    auto* frame = new QFrame(this);
    frame->setObjectName(name);
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setMaximumWidth(520);
    captionLabel = new QLabel(caption, frame);
    auto* layout = new QGridLayout(frame);
    layout->addWidget(captionLabel, 0, 0, 1, 3);
    frame->hide();
    frame->installEventFilter(this);
    return frame;
}

void MenuForm::buildPanels() {
    dossiers_ = new Grid(QStringLiteral("DBGrid1"),
                         {{&strsociete.soc_nom, QStringLiteral("Dossier"), 320},
                          {&strsociete.soc_chemin, QStringLiteral("Données"), 320},
                          {&strsociete.soc_mot, QStringLiteral("Mot"), 0},
                          {&strsociete.soc_utilisateur, QStringLiteral("Poste"), 80}},
                         this);
    dossiers_->setColumnHidden(2, true); // the word is what the user must know
    dossiers_->hide();
    dossiers_->chosen = [this](const Record&) {
        wordPanel_->show();
        word_->clear();
        word_->setFocus();
    };

    QLabel* caption = nullptr;
    wordPanel_ = panel(QStringLiteral("Frame6"), QStringLiteral("Mot de passe du dossier :"), caption);
    word_ = new Edit(wordPanel_);
    word_->setObjectName(QStringLiteral("txtmot"));
    word_->setMaxLength(20);
    connect(word_, &QLineEdit::textEdited, this, [this](const QString& typed) { word_->setText(typed.toUpper()); });
    connect(word_, &QLineEdit::returnPressed, this, [this] { enterDossier(); });
    static_cast<QGridLayout*>(wordPanel_->layout())->addWidget(word_, 1, 0);

    bookPanel_ = panel(QStringLiteral("Frame3"), QString(), bookCaption_);
    salesBook_ = button(QStringLiteral("Cmdok"), QStringLiteral("&Valider"), [this] {
        bookPanel_->hide();
        this->desk().open(ostraneBook_->isChecked() ? QStringLiteral("T_ostrane") : QStringLiteral("T_gestion"),
                          bookMode_, bookCaption_->text());
    });
    ostraneBook_ = button(QStringLiteral("Optostrane"), QStringLiteral("Livre &OSTRANE"), [] {});
    ostraneBook_->setCheckable(true);
    leaveBook_ = leaveButton(QStringLiteral("cmdnonok"), QStringLiteral("&Annuler"), [this] { bookPanel_->hide(); });
    auto* bookLayout = static_cast<QGridLayout*>(bookPanel_->layout());
    bookLayout->addWidget(ostraneBook_, 1, 0);
    bookLayout->addWidget(salesBook_, 1, 1);
    bookLayout->addWidget(leaveBook_, 1, 2);

    numberPanel_ = panel(QStringLiteral("Frame4"), QString(), numberCaption_);
    oldNumber_ = new Edit(numberPanel_);
    oldNumber_->setObjectName(QStringLiteral("Txtnum4"));
    newNumber_ = new Edit(numberPanel_);
    newNumber_->setObjectName(QStringLiteral("Txtnum5"));
    for (Edit* box : {oldNumber_, newNumber_}) {
        box->setMaxLength(6);
        onLeft(box, [box] { box->put(padded(box->text(), 6)); });
    }
    auto* apply = button(QStringLiteral("Cmdoknum"), QStringLiteral("&Valider"), [this] { renumber(); });
    leaveNumber_ = leaveButton(QStringLiteral("Cmdnonnum"), QStringLiteral("&Annuler"), [this] {
        numberPanel_->hide();
        notify(QStringLiteral("traitement abandonné"));
    });
    auto* numberLayout = static_cast<QGridLayout*>(numberPanel_->layout());
    numberLayout->addWidget(new QLabel(QStringLiteral("Numéro actuel :"), numberPanel_), 1, 0);
    numberLayout->addWidget(oldNumber_, 1, 1);
    numberLayout->addWidget(new QLabel(QStringLiteral("Nouveau numéro :"), numberPanel_), 2, 0);
    numberLayout->addWidget(newNumber_, 2, 1);
    numberLayout->addWidget(apply, 3, 1);
    numberLayout->addWidget(leaveNumber_, 3, 2);

    buildDiskPanel();

    logo_ = new QLabel(this);
    logo_->setObjectName(QStringLiteral("Imglogo"));
    logo_->setAlignment(Qt::AlignCenter);
    logo_->hide();
    welcome_ = new QLabel(this);
    welcome_->setObjectName(QStringLiteral("Label1"));
    welcome_->setAlignment(Qt::AlignCenter);
    welcome_->setTextFormat(Qt::PlainText);

    buildHome();
}

void MenuForm::buildHome() {
    home_ = new HomePage(
        *this, [this](const QString& entry) { return mayChoose(entry); },
        [this](const Opening& opening) { guarded([&] { open(opening); }); });
    home_->hide();
    auto* page = new QWidget;
    tabs_ = new ScreenTabs(page, this);
    connect(tabs_, &QTabWidget::currentChanged, this, [this] { leaveKeys(); });
    home_->tabsWanted = [this](bool wanted) { desk().tabs = wanted ? tabs_ : nullptr; };
    auto* room = new QVBoxLayout(page);
    style::letBreathe(*room);
    room->addStretch();
    room->addWidget(logo_);
    room->addWidget(welcome_);
    room->addWidget(dossiers_, 3);
    for (QFrame* frame : {wordPanel_, bookPanel_, numberPanel_, diskPanel_})
        room->addWidget(frame, 0, Qt::AlignHCenter);
    room->addWidget(home_, 20);
    room->addStretch();
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->setMenuBar(bar_);
    layout->addWidget(tabs_);
    desk().searchWanted = [this] {
        if (home_->isHidden()) return;
        desk().bringForward(*this);
        tabs_->showHome();
        home_->search();
    };
}

/// Within the window, Alt and a letter mean the screen or the panel that its user is in before the menu.
void MenuForm::leaveKeys() {
    QSet<QChar> keys;
    if (const Form* screen = tabs_->current())
        keys = accessKeysOf(*screen);
    else
        for (const QFrame* panel : {wordPanel_, bookPanel_, numberPanel_, diskPanel_})
            if (panel->isVisible()) keys += accessKeysOf(*panel);
    bar_->leaveKeys(keys);
}

bool MenuForm::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide) leaveKeys();
    return Form::eventFilter(watched, event);
}

/// Reads the dossier once the window is there.
void MenuForm::startHome() {
    home_->show();
    QTimer::singleShot(0, home_, [this] { home_->start(); });
}

/// What other windows and workstations wrote meanwhile shows when the user comes back.
void MenuForm::changeEvent(QEvent* event) {
    Form::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) home_->look();
}

void MenuForm::buildDiskPanel() {
    QLabel* caption = nullptr;
    diskPanel_ = panel(QStringLiteral("Frame5"), QStringLiteral("Lettre du disque amovible, ou dossier :"), caption);
    disk_ = new Edit(diskPanel_);
    disk_->setObjectName(QStringLiteral("txtdisk"));
    caption->setBuddy(disk_);
    saved_ = new QLabel(diskPanel_);
    saved_->setObjectName(QStringLiteral("Lblsauv"));
    saved_->setTextFormat(Qt::PlainText);
    auto* save = button(QStringLiteral("cmdoksauv"), QStringLiteral("Sau&vegarder"), [this] { backUp(); });
    leaveDisk_ = leaveButton(QStringLiteral("Cmdnonsauv"), QStringLiteral("&Fermer"), [this] { diskPanel_->hide(); });
    connect(disk_, &QLineEdit::returnPressed, save, &QPushButton::click);
    auto* layout = static_cast<QGridLayout*>(diskPanel_->layout());
    layout->addWidget(disk_, 1, 0);
    layout->addWidget(save, 1, 1);
    layout->addWidget(leaveDisk_, 1, 2);
    layout->addWidget(saved_, 2, 0, 1, 3);
}

void MenuForm::chooseDossier() {
    setMenusAvailable(false);
    dossiers_->rows().setRecords(startup::dossiers(session()));
    dossiers_->show();
    if (dossiers_->rows().rowCount() > 0) dossiers_->selectRow(0);
    dossiers_->setFocus();
    welcome_->setText(QStringLiteral("Choisissez un dossier (double clic ou Entrée)"));
    applyTitle(QStringLiteral("MOLVEN - LOGICIEL DE TRACABILITE"));
}

void MenuForm::enterDossier() {
    const auto dossier = dossiers_->current();
    if (!dossier) return;
    const bool entered = guarded([&] { startup::chooseDossier(session(), *dossier, word_->text()); });
    wordPanel_->hide();
    if (!entered) {
        dossiers_->setFocus();
        return;
    }
    guarded([this] {
        openDossier();
        dossiers_->hide();
        setMenusAvailable(true);
        applyCompanySwitches();
    });
}

/// Others see that this workstation works in the folders of the dossier.
void MenuForm::enterFolders() {
    QStringList folders{session().chemin_base, session().chemin_util};
    if (session().rules().isSecondSite()) folders.append(session().chemin_gv);
    presence_ = std::make_unique<Presence>(folders, Presence::Kind::Working);
}

void MenuForm::openDossier() {
    for (const QString& file : startup::finishCompactions(session()))
        notify(QStringLiteral("Le recompactage interrompu de %1 a été terminé").arg(file));
    startup::openDossier(session());
    enterFolders();
    showLogo(session().spe_cod);
    applyCompanySwitches();
    const QString currency =
        session().spe_mon.isEmpty() ? QString() : QStringLiteral("\nPrix en : ") + session().spe_mon;
    welcome_->setText(session().spe_nom + currency);
    applyTitle(startup::mainTitle(session()));
    startHome();
}

void MenuForm::showLogo(const QString& company) {
    const QPixmap picture(startup::logoFile(session(), company));
    if (picture.isNull()) return;
    logo_->setPixmap(picture);
    logo_->show();
}

void MenuForm::setMenusAvailable(bool available) {
    for (QAction* action : topLevel_) action->setEnabled(available);
}

void MenuForm::applyCompanySwitches() {
    const CompanyRules rules = session().rules();
    for (const MenuEntry& entry : menuTree())
        if (entry.available) findChild<QAction*>(entry.name)->setEnabled((rules.*entry.available)());
    for (const MenuEntry& entry : menuTree()) style::markIdle(*findChild<QAction*>(entry.name), whyIdle(entry));
}

/// Why an entry that can be chosen would do nothing; empty for one that acts.
QString MenuForm::whyIdle(const MenuEntry& entry) {
    const CompanyRules rules = session().rules();
    if (entry.action == MenuAction::Submenu || entry.action == MenuAction::Separator) return {};
    if (entry.action == MenuAction::Nothing || (entry.allowed && !(rules.*entry.allowed)()))
        return entry.refusal.isEmpty() ? QStringLiteral("Sans objet pour votre société") : entry.refusal;
    const bool isScreen = entry.action == MenuAction::Screen || entry.action == MenuAction::InvoiceChoice;
    const bool isReprint = entry.action == MenuAction::Reprint;
    const QString target = isScreen ? entry.target : isReprint ? reprintScreen(rules, entry.mode, false) : entry.name;
    if (!(isScreen || isReprint) || desk().isBuilt(target, entry.mode)) return {};
    return QStringLiteral("Pas encore disponible dans cette version");
}

bool MenuForm::mayChoose(const QString& name) {
    const MenuEntry* entry = menuEntry(name);
    const auto* action = findChild<QAction*>(name);
    return entry && action && action->isEnabled() && whyIdle(*entry).isEmpty();
}

/// The screens of the home page and of its search open as the menu opens them, to whom it opens them.
void MenuForm::open(const Opening& opening) {
    const MenuEntry& entry = *menuEntry(opening.entry);
    if (!mayChoose(opening.entry)) throw Refusal(whyIdle(entry));
    if (entry.action != MenuAction::Screen && entry.action != MenuAction::InvoiceChoice) return act(entry);
    const QString screen = opening.screen.isEmpty() ? entry.target : opening.screen;
    // A screen behind an entry's own is of no mode.
    const bool isOwn = screen == entry.target || entry.action == MenuAction::InvoiceChoice;
    Form* form = desk().open(screen, isOwn ? entry.mode : QString(), entry.caption);
    if (form) form->guarded([&] { opening.fill(*form); });
}

void MenuForm::act(const MenuEntry& entry) {
    const CompanyRules rules = session().rules();
    if (entry.allowed && !(rules.*entry.allowed)()) {
        if (!entry.refusal.isEmpty()) prompt().tell(entry.refusal, {}, Icon::Information);
        return;
    }
    if (!entry.notice.isEmpty()) notify(entry.notice);
    switch (entry.action) {
    case MenuAction::Screen:
        if (auto* form = dynamic_cast<OpenedByMenu*>(desk().open(entry.target, entry.mode, entry.caption)))
            form->openedBy(entry.name);
        break;
    case MenuAction::InvoiceChoice:
        if (rules.hasInvoiceBookChoice())
            askBook(entry);
        else
            desk().open(entry.target, entry.mode, entry.caption);
        break;
    case MenuAction::Reprint:
        openReprint(entry);
        break;
    case MenuAction::Program:
        startProgram(entry.target);
        break;
    case MenuAction::DepotFamilies:
        updateDepotFamilies();
        break;
    case MenuAction::Renumber:
        startRenumbering(entry);
        break;
    case MenuAction::Compaction:
        compact();
        break;
    case MenuAction::Backup:
        askDisk();
        break;
    case MenuAction::Quit:
        close();
        break;
    case MenuAction::Submenu:
    case MenuAction::Separator:
    case MenuAction::Nothing:
        break;
    }
}

void MenuForm::openReprint(const MenuEntry& entry) {
    const bool barcodes = prompt().ask(QStringLiteral("Edition Code Barre? "));
    desk().open(reprintScreen(session().rules(), entry.mode, barcodes), entry.mode, entry.caption);
}

void MenuForm::startProgram(const QString& program) {
    const QString path = session().programFile(program);
    if (!QFile::exists(path))
        throw Refusal(QStringLiteral("Le programme %1 est absent du dossier du programme").arg(program));
    if (!QProcess::startDetached(path, {}, session().dossier_app))
        throw Refusal(QStringLiteral("Impossible de lancer le programme %1").arg(program));
}

void MenuForm::updateDepotFamilies() {
    notify(QStringLiteral("Il y a eu %1 produits mis à jour ").arg(units::updateDepotFamilies(session())));
}

void MenuForm::askBook(const MenuEntry& entry) {
    tabs_->showHome();
    bookMode_ = entry.mode;
    bookCaption_->setText(QString(entry.caption).remove(u'&'));
    ostraneBook_->setChecked(false);
    bookPanel_->show();
    salesBook_->setFocus();
}

void MenuForm::startRenumbering(const MenuEntry& entry) {
    renumbering_ = renumbering::ofMenu(entry.name);
    if (!prompt().ask(renumbering_->question, QStringLiteral("Utilitaires"))) {
        notify(QStringLiteral("traitement abandonné"));
        return;
    }
    Workspace workspace;
    oldNumber_->put(workspace.open(session().path(renumbering_->file))
                        .greatest(renumbering_->headers, renumbering_->headers.fac_no));
    newNumber_->put({});
    numberCaption_->setText(QString(renumbering_->question).chopped(2));
    tabs_->showHome();
    numberPanel_->show();
    newNumber_->setFocus();
}

void MenuForm::renumber() {
    renumbering::check(session(), *renumbering_, oldNumber_->text(), newNumber_->text());
    const QString numbers = oldNumber_->text() + QStringLiteral(" -> ") + newNumber_->text();
    if (!prompt().confirm(QStringLiteral("Numérotation ok ? ?"), QStringLiteral("Utilitaires : ") + numbers)) return;
    renumbering::renumber(session(), *renumbering_, oldNumber_->text(), newNumber_->text());
    numberPanel_->hide();
    notify(QStringLiteral("traitement terminé"));
}

void MenuForm::askDisk() {
    upkeep::requireBackupHere(session());
    saved_->clear();
    tabs_->showHome();
    diskPanel_->show();
    disk_->setFocus();
}

void MenuForm::backUp() {
    saved_->clear();
    upkeep::requireDisk(disk_->text());
    prompt().tell(QStringLiteral("ATTENTION LES AUTRES POSTES DOIVENT ETRE FERMES -- inserer le disque amovible"), {},
                  Icon::Warning);
    const upkeep::Saved saved = upkeep::backUp(session(), upkeep::backupTarget(session(), disk_->text()),
                                               progress(*this, QStringLiteral("Sauvegarde des fichiers")));
    const QString size = format(Decimal(static_cast<long long>(saved.bytes / 1024)), QStringLiteral("### ### ##0"));
    saved_->setText(
        QStringLiteral("%1, %2 Ko : copie vérifiée").arg(counted(saved.files.size(), QStringLiteral("fichier")), size));
    saved_->setToolTip(saved.files.join(u'\n'));
    home_->countAgain();
}

/// Closes the other windows, whose files are to be rewritten; false when the user keeps one.
bool MenuForm::closeOthers() {
    for (Form* form : desk().windows())
        if (form != this && Desk::isOpen(*form) && !form->close()) return false;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // they hold their files until they are gone
    return true;
}

void MenuForm::compact() {
    if (!prompt().ask(
            QStringLiteral("Il est conseillé de faire une sauvegarde avant un recompactage. Voulez-vous continuer ? ")))
        return;
    if (!closeOthers()) return;
    notify(QStringLiteral("Début Recompactage"));
    presence_.reset();
    home_->stop();
    const auto back = qScopeGuard([this] {
        guarded([this] { enterFolders(); });
        startHome();
    });
    upkeep::compact(session(), progress(*this, QStringLiteral("Recompactage des fichiers")));
    notify(QStringLiteral("Recompactage terminé"));
}

/// Escape leaves what stands open in the window; the program is left by its menu entry and by closing the window.
void MenuForm::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) return Form::keyPressEvent(event);
    if (wordPanel_->isVisible()) {
        wordPanel_->hide();
        dossiers_->setFocus();
    } else if (bookPanel_->isVisible()) {
        leaveBook_->click();
    } else if (numberPanel_->isVisible()) {
        leaveNumber_->click();
    } else if (diskPanel_->isVisible()) {
        leaveDisk_->click();
    } else if (dossiers_->isVisible()) {
        close();
    }
}

bool MenuForm::mayClose() { return desk().quit(); }

} // namespace molven
