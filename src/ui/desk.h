#pragma once

#include "printing/report.h"
#include "shell/session.h"
#include "ui/habits.h"
#include "ui/notices.h"
#include "ui/prompt.h"
#include "ui/search_key.h"

#include <QHash>
#include <QList>
#include <QPointer>

#include <functional>
#include <memory>

namespace molven {

class Form;
class ScreenTabs;

/// Where finished print jobs go.
class PrintTarget {
public:
    virtual ~PrintTarget() = default;
    /// True when the job was printed or saved, false when its user only looked at it.
    virtual bool print(const PrintJob& job) = 0;
    /// The same without looking at it first, so many copies of it.
    virtual bool printCopies(const PrintJob& job, int) { return print(job); }
};

/// One run of the program: its session, its open windows, what it says and prints. Every screen is handed it.
class Desk {
public:
    /// Makes a screen; the mode word stands in the session.
    using Factory = std::function<Form*(Desk&)>;

    Desk(const QString& programFolder, std::unique_ptr<Prompt> prompt, std::unique_ptr<PrintTarget> printer);
    ~Desk();
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    Session session;
    Habits habits;

    Prompt& prompt() { return *prompt_; }
    /// Tells news that asks nothing, in the line of notices of the window the user is in.
    void notify(const QString& text);
    const QList<Notice>& notices() const { return notices_.all(); }
    /// True when the job was printed or saved.
    bool print(const PrintJob& job) { return printer_->print(job); }
    bool printCopies(const PrintJob& job, int copies) { return printer_->printCopies(job, copies); }
    /// A list, headed by the company and the day.
    bool print(const Report& report);

    /// A screen that is built for these mode words only, for all when there are none.
    void addScreen(const QString& name, const Factory& factory, const QStringList& modes = {}) {
        screens_.insert(name, {factory, modes});
    }
    bool isBuilt(const QString& name, const QString& mode) const;
    QStringList screens() const { return screens_.keys(); }
    /// Opens a screen under a mode word, or shows it again when it is open in that mode. `title` names the menu
    /// entry, for a screen not built yet.
    Form* open(const QString& name, const QString& mode = {}, const QString& title = {});
    /// The open window of that name, or null.
    Form* window(const QString& name) const;
    QList<Form*> windows() const;
    /// Whether its user has not closed it, be it in a tab that is not in sight.
    static bool isOpen(const Form& form);
    /// Puts a screen in front of the others.
    void bringForward(Form& form);
    /// Where screens open when the user wants them inside the main window, and its main window; null for windows of
    /// their own.
    QPointer<ScreenTabs> tabs;
    /// The search for everything, wanted from any screen; nothing where there is none.
    std::function<void()> searchWanted = [] {};
    /// Closes every window and ends the program; false when the user keeps a window open.
    bool quit();

    /// Family of the barcode font; tells the user, once a run, when it is not installed.
    QString barcodeFamily();

    /// Another copy of the program already runs; replaced in tests.
    std::function<bool()> isAlreadyRunning = [] { return false; };

private:
    struct Screen {
        Factory factory;
        QStringList modes;
    };
    Form* current() const;

    SearchKey searchKey_{*this};
    std::unique_ptr<Prompt> prompt_;
    Notices notices_;
    std::unique_ptr<PrintTarget> printer_;
    QHash<QString, Screen> screens_;
    QList<QPointer<Form>> windows_;
    bool quitting_ = false;
    bool fontTold_ = false;
};

} // namespace molven
