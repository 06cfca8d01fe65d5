#pragma once

#include "sales/set_journeys.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace molven {

class Form;
class Grid;
class SetFilling;
class SetReturning;
class SetSending;
class SetTray;

/// The physical sets of the type on the screen, the units of one of them, and what is done with it.
class SetShelf : public QWidget {
public:
    SetShelf(Form& form, set_journeys::Files& files);

    /// Shows the sets of a type, empty for none; an open tray is left.
    void show(const QString& type);
    /// Another component is looked at: while a set is filled, its units are offered.
    void follow(const QString& component);
    bool hasUnsavedWork() const;

    std::function<void(const SetTray*)> trayOpened; ///< null once it is left
    std::function<void()> changed;                  ///< the number of sets of the type

private:
    QLayout* buttons();
    void buildTrays();
    /// A button whose deed may meet what another workstation did meanwhile: the lists are read again then.
    QPushButton* deed(const QString& name, const QString& caption, const std::function<void()>& handler);
    void refresh(const QString& serial);
    void showContents();
    QString requireSet() const;
    void open(SetTray* tray);
    bool mayLeaveTray();
    void leaveTray();
    void add();
    void fill();
    void takeOut();
    void remove();
    void startSending();
    void startReturn();

    Form& form_;
    set_journeys::Files& files_;
    QString type_, component_, serial_;
    Grid* sets_;
    QLabel* title_;
    Grid* units_;
    QStackedWidget* trays_;
    SetFilling* filling_;
    SetSending* sending_;
    SetReturning* returning_;
};

} // namespace molven
