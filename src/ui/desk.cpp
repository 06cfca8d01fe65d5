#include "ui/desk.h"

#include "data/clock.h"
#include "data/dates.h"
#include "printing/barcode_font.h"
#include "shell/folder_files.h"
#include "ui/form.h"
#include "ui/progress.h"
#include "ui/screen_tabs.h"
#include "ui/unbuilt_form.h"

#include <QApplication>

#include <algorithm>

namespace molven {

Desk::Desk(const QString& programFolder, std::unique_ptr<Prompt> prompt, std::unique_ptr<PrintTarget> printer)
    : prompt_(std::move(prompt)), printer_(std::move(printer)) {
    session.dossier_app = programFolder;
    notices_.show = [this](const QStringList& texts) {
        Form* form = current();
        if (form) form->showNotices(texts);
        return form != nullptr;
    };
}

/// The window the user is in: the active one, or the one opened last.
Form* Desk::current() const {
    const QList<Form*> open = windows();
    for (auto form = open.rbegin(); form != open.rend(); ++form)
        if ((*form)->isVisible() && (*form)->isActiveWindow()) return *form;
    for (auto form = open.rbegin(); form != open.rend(); ++form)
        if ((*form)->isVisible()) return *form;
    return nullptr;
}

void Desk::notify(const QString& text) {
    prompt().hear(text);
    const Form* form = current();
    notices_.add(form ? form->windowTitle() : QString(), text);
}

Desk::~Desk() {
    quitting_ = true;
    for (const QPointer<Form>& form : windows_) delete form; // one may take those in its tabs with it
}

Form* Desk::open(const QString& name, const QString& mode, const QString& title) {
    session.mode_ecran = mode;
    for (Form* form : windows()) {
        if (form->objectName() != name || form->mode() != mode || !isOpen(*form)) continue;
        form->guarded([form] { form->shownAgain(); });
        bringForward(*form);
        return form;
    }
    Form* form = nullptr;
    try {
        form = isBuilt(name, mode) ? screens_[name].factory(*this) : new UnbuiltForm(*this, name, title);
    } catch (const Refusal& refusal) {
        prompt().tell(refusal.text);
        return nullptr;
    } catch (const DataError& error) {
        showDataError(*prompt_, error);
        return nullptr;
    }
    form->setAttribute(Qt::WA_DeleteOnClose);
    windows_.removeIf([](const QPointer<Form>& closed) { return !closed; });
    windows_.append(form);
    if (tabs)
        tabs->add(*form);
    else
        form->show();
    form->window()->activateWindow();
    notices_.flush();
    return form;
}

bool Desk::isOpen(const Form& form) { return !form.isHidden(); }

void Desk::bringForward(Form& form) {
    if (tabs) tabs->bringForward(form);
    QWidget& window = *form.window();
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.activateWindow();
    window.raise();
}

bool Desk::isBuilt(const QString& name, const QString& mode) const {
    const auto screen = screens_.constFind(name);
    return screen != screens_.constEnd() && (screen->modes.isEmpty() || screen->modes.contains(mode));
}

QList<Form*> Desk::windows() const {
    QList<Form*> open;
    for (const QPointer<Form>& form : windows_)
        if (form) open.append(form);
    return open;
}

Form* Desk::window(const QString& name) const {
    const QList<Form*> open = windows();
    for (auto form = open.rbegin(); form != open.rend(); ++form)
        if ((*form)->objectName() == name && isOpen(**form)) return *form;
    return nullptr;
}

bool Desk::quit() {
    if (quitting_) return true;
    quitting_ = true;
    QList<Form*> open = windows();
    std::reverse(open.begin(), open.end());
    for (Form* form : open)
        if (isOpen(*form) && !form->close()) return quitting_ = false;
    QApplication::quit();
    return true;
}

bool Desk::print(const Report& report) {
    const auto laidOut = [&] { // its progress ends before the preview opens
        const Progress told = current() ? progress(*current(), QStringLiteral("Mise en page")) : Progress();
        return report.print(session.spe_nom, dateText(Clock::today()), told);
    };
    return print(laidOut());
}

QString Desk::barcodeFamily() {
    const QString named = firstLine(session.programFile(QStringLiteral("POLICE.HC"))).value_or(QString());
    const BarcodeFont font = BarcodeFont::choose(named);
    if (!font.missing.isEmpty() && !fontTold_) {
        fontTold_ = true;
        prompt().tell(QStringLiteral("La police code barre \"%1\" n'est pas installée : la ligne du code est imprimée "
                                     "en caractères simples.")
                          .arg(font.missing),
                      {}, Icon::Warning);
    }
    return font.family;
}

} // namespace molven
