#pragma once

#include "play/stand_ins.h"
#include "play/statement.h"

#include <QPointer>

class QAction;

namespace molven {
class Grid;
}

namespace molven::play {

/// Before the application is made: without a display, a screen of 1280 x 800 in memory.
void useScreen();

/// How long a window or a click may take to come.
constexpr int PatienceMs = 5000;

/// Plays scenarios on one program folder: real windows, keys, clicks and data files.
class Player {
public:
    /// Pictures and PDFs go to `out` when it is not empty.
    Player(const QString& home, const QString& out);
    ~Player();

    /// Plays one file to its end; answers what did not hold as "FILE:LINE: ...", empty when all did.
    QString play(const QString& file);

private:
    struct Word {
        int fewest, most; ///< arguments
        void (Player::*run)(const QStringList&);
    };
    static const QHash<QString, Word>& vocabulary();

    void run(const QString& file);
    void runStatement(const Statement& statement);
    void settle();

    // Program and windows
    void start(const QStringList&);
    void form(const QStringList& arguments);
    void closed(const QStringList& arguments);
    void menu(const QStringList& arguments);
    void title(const QStringList& arguments);
    void titleHolds(const QStringList& arguments);
    void picture(const QStringList& arguments);
    // Controls
    void set(const QStringList& arguments);
    void key(const QStringList& arguments);
    void press(const QStringList& arguments);
    void shows(const QStringList& arguments);
    void showsPart(const QStringList& arguments);
    void focus(const QStringList& arguments);
    void enabled(const QStringList& arguments);
    void disabled(const QStringList& arguments);
    void visible(const QStringList& arguments);
    void hidden(const QStringList& arguments);
    // Grids
    void row(const QStringList& arguments);
    void open(const QStringList& arguments);
    void rows(const QStringList& arguments);
    void cell(const QStringList& arguments);
    // Messages
    void answer(const QStringList& arguments);
    void says(const QStringList& arguments);
    void saysPart(const QStringList& arguments);
    void silent(const QStringList&);
    // Data, time, paper, files
    void data(const QStringList& arguments);
    void today(const QStringList& arguments);
    void printed(const QStringList& arguments);
    void copy(const QStringList& arguments);
    void remove(const QStringList& arguments);
    void write(const QStringList& arguments);
    void include(const QStringList& arguments);

    Desk& desk();
    Form& window();
    QWidget* control(const QString& name);
    QWidget* usable(const QString& name);
    Grid* grid(const QString& name);
    QModelIndex cellOf(const QString& gridName, const QString& which);
    QAction* menuEntry(const QString& name);
    void waitForPressedButton();
    QString nextMessage();
    QString programFile(const QString& name) const;

    QString home_, out_;
    std::unique_ptr<Desk> desk_;
    ScriptedPrompt* prompt_ = nullptr;
    KeepingPrinter* printer_ = nullptr;
    QPointer<Form> window_;
    QStringList files_; ///< being played, the innermost last
    int line_ = 0;
};

} // namespace molven::play
