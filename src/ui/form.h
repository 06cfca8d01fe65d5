#pragma once

#include "data/errors.h"
#include "ui/desk.h"

#include <QPointer>
#include <QWidget>

class QAbstractButton;
class QLabel;
class QPushButton;

namespace molven {

class Edit;
class PickPanel;
struct PickList;

/// Shows a fault of the data engine; when the engine kept records of it, offers their list.
void showDataError(Prompt& prompt, const DataError& error);

/// A window of the program. Every handler of its controls runs guarded: a refusal is shown and the focus put on
/// the control bound to its field, a data error goes to the data-error display, and the window stays open.
/// A deed acts on what the eye sees: every button first leaves the boxes that were typed into, however it is pressed,
/// and does nothing when one of them refuses, or while a key stands refused.
/// Keys: Return validates or goes to the next field, Escape leaves, F1 opens the guide at the window's page, F2 the
/// list behind a code field, F8 that of the session's notices; Ctrl+S validates, Ctrl+N presses `CmdAjout`, Ctrl+P
/// prints, Ctrl+F filters the list, Ctrl+H shows the record's history, Ctrl+K the search for everything.
class Form : public QWidget {
public:
    Form(Desk& desk, const QString& name);
    ~Form() override;

    /// The screen that a widget is part of; null for none.
    static Form* of(QWidget* part);
    const QString& mode() const { return mode_; }
    /// The name under which the user's habits with this window are kept.
    QString habit() const;
    /// Shows news in the line at the foot until the next deed, and says it to screen readers.
    void showNotices(const QStringList& texts);
    /// Another deed begins.
    void clearNotices();
    /// Opens the list behind a control, as F2 does.
    bool openPicker(QWidget* control);

    /// The open window was asked for again: it reads anew what it was opened to show.
    virtual void shownAgain() {}

    // For the form and the parts it is made of.
    Desk& desk() { return desk_; }
    Session& session() { return desk_.session; }
    /// What it says and asks stands over this window, which comes to the front.
    Prompt& prompt();
    void notify(const QString& text) { desk_.notify(text); }

    /// Runs a handler; false when it was refused or failed.
    bool guarded(const std::function<void()>& handler);
    /// A refusal naming this table field puts the focus on that control.
    void bind(const QString& field, QWidget* control) { bound_.insert(field, control); }
    void focusField(const QString& field);
    /// Whether a button can act, and why it cannot, which its tip says.
    void allow(QPushButton* button, bool allowed, const QString& why);

    /// Writes a change of a record; false when another workstation had changed it meanwhile. The user is told `changes`
    /// of it then, and `reread` runs when he wants to read it again under what he typed.
    bool written(const std::function<void()>& write, const std::function<QString()>& changes,
                 const std::function<void()>& reread);
    /// The question before typed work is lost; `about` names it.
    bool givesUp(const QString& about);
    /// Leaves every box that was typed into, but that one; false when one refuses what stands in it.
    bool settle(const QWidget* except = nullptr);
    /// A push button with its handler, guarded, once the boxes are left.
    QPushButton* button(const QString& name, const QString& caption, const std::function<void()>& handler);
    /// A push button that gives up what is typed, or closes the window: refused boxes do not hold it back.
    QPushButton* leaveButton(const QString& name, const QString& caption, const std::function<void()>& handler);
    /// Runs when the user leaves a box after changing it, guarded.
    void onLeft(Edit* edit, const std::function<void()>& handler);
    /// The list behind a code field, on F2 and on its button when it has one.
    void onPick(QWidget* control, const std::function<void()>& handler, QAbstractButton* listButton = nullptr);
    /// Shows a list over the form; the chosen record is handed over and the list closes.
    void pick(const PickList& list);

protected:
    /// The one routine of titles: caption, centred on the screen, state.
    void applyTitle(const QString& caption, Qt::WindowStates state = Qt::WindowNoState);
    /// Pressed by Return outside a button.
    void setDefaultButton(QPushButton* button);
    /// Pressed by Ctrl+S: the default button, else `cmdvalide`.
    virtual QPushButton* validation() const;
    /// Typed work that closing the window would lose: the user is asked first.
    virtual bool hasUnsavedWork() const { return false; }
    /// True when nothing would be lost, or the user gives it up.
    bool mayLoseWork();
    /// Asked when the window is to close: whether it may.
    virtual bool mayClose() { return mayLoseWork(); }
    /// Pressed by Escape, once the user gave up what is typed when it `asks`; without one, Escape closes the window.
    void setCancelButton(QPushButton* button, bool asks = false);

    void closeEvent(QCloseEvent* event) final;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void pressReturn();
    void escape();
    void settleOnScreen();
    QWidget* controlOf(const QString& field) const;
    void markRefused(const Refusal& refusal);
    void mendBoxes();
    bool answersStandardKey(int key);
    void startFilter();
    void placeNoticeLine();

    Desk& desk_;
    QString mode_;
    QHash<QString, QPointer<QWidget>> bound_;
    QHash<QWidget*, std::function<void()>> pickers_;
    QPointer<QPushButton> defaultButton_;
    QPointer<QPushButton> cancelButton_;
    bool cancelAsks_ = false;
    QPointer<PickPanel> pickPanel_;
    bool standsAsLeft_ = false; ///< where and as large as the user left it
    QLabel* noticeLine_;
};

} // namespace molven
