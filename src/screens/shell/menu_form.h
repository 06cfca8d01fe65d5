#pragma once

#include "data/presence.h"
#include "shell/menu_tree.h"
#include "ui/form.h"

class QAction;
class QFrame;
class QLabel;
class QMenu;
class QTextEdit;

namespace molven {

class Grid;
class HomePage;
class MenuBar;
class ScreenTabs;
struct Opening;
struct Renumbering;

/// Main window: chooses and opens the dossier, then carries the menu and the home page. It knows entries, not screens.
class MenuForm : public Form {
public:
    explicit MenuForm(Desk& desk);

protected:
    bool mayClose() override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildMenu();
    void buildPanels();
    void buildHome();
    void startHome();
    void leaveKeys();
    void buildDiskPanel();
    QFrame* panel(const QString& name, const QString& caption, QLabel*& captionLabel);

    void chooseDossier();
    void enterDossier();
    void openDossier();
    void showLogo(const QString& company);
    void setMenusAvailable(bool available);
    void applyCompanySwitches();

    QString whyIdle(const MenuEntry& entry);
    void act(const MenuEntry& entry);
    /// Whether choosing an entry would do something.
    bool mayChoose(const QString& name);
    void open(const Opening& opening);
    void openReprint(const MenuEntry& entry);
    void startProgram(const QString& program);
    void updateDepotFamilies();
    void askBook(const MenuEntry& entry);
    void startRenumbering(const MenuEntry& entry);
    void renumber();
    void askDisk();
    void backUp();
    void compact();
    bool closeOthers();
    void enterFolders();

    MenuBar* bar_;
    QList<QAction*> topLevel_;
    Grid* dossiers_;
    QFrame* wordPanel_;
    Edit* word_;
    QFrame* diskPanel_;
    Edit* disk_;
    QLabel* saved_;
    QPushButton* leaveDisk_;
    std::unique_ptr<Presence> presence_; ///< in the folders of the open dossier
    QFrame* bookPanel_;
    QLabel* bookCaption_;
    QPushButton* salesBook_;
    QPushButton* ostraneBook_;
    QPushButton* leaveBook_;
    QString bookMode_;
    QFrame* numberPanel_;
    QLabel* numberCaption_;
    Edit* oldNumber_;
    Edit* newNumber_;
    QPushButton* leaveNumber_;
    const Renumbering* renumbering_ = nullptr;
    QLabel* logo_;
    QLabel* welcome_;
    ScreenTabs* tabs_;
    HomePage* home_;
};

} // namespace molven
