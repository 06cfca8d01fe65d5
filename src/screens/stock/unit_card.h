#pragma once

#include "data/database.h"
#include "ui/code_boxes.h"

#include <QGroupBox>

#include <functional>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace molven {

class Edit;
class Form;
struct FieldBox;
class Grid;
class RecordPanel;

/// Looks units up by their four numbers, tells what became of one, and changes what may be changed of it: conformity,
/// implantation, deletion, labels.
class UnitCard : public QGroupBox {
public:
    explicit UnitCard(Form& form);

    /// Lists units and shows the first.
    void list(const Criterion& criterion);
    void focusSearch();
    /// Reads the shown unit again after it was written elsewhere.
    void refresh();
    /// A conformity or an implantation is being typed.
    bool hasUnsavedWork() const;
    /// True when nothing typed into the tray would be lost, or the user gives it up.
    bool mayLeaveTray();
    /// What Return presses with the focus there: the button that validates the open tray, nothing in a search box.
    QPushButton* validateButton(const QWidget* focused) const;
    /// What gives the open tray up; null when none is open.
    QPushButton* cancelButton() const;

    std::function<void(const Record& unit)> changeWanted;

private:
    QLayout* buildSearch();
    QLayout* buildButtons();
    void buildTray();
    Edit* searchBox(const QString& name, int characters, const std::function<void()>& find);
    void setPickers();
    void search(const Criterion& criterion);
    void findByNumber();
    void findByReference();
    void findBySupplierSerial();
    void findBySupplierReference();
    /// Shows the unit of the current row, however it became current, unless the user keeps what is typed in the tray.
    void bringUp(const Record& unit);
    void show(const Record& unit);
    void showNone();
    void leaveTray();
    /// One entry below the unit: its boxes, and the buttons that take or leave them.
    struct Entry {
        QWidget* page;
        RecordPanel* boxes;
        std::optional<CodeBoxes> codes;
        QPushButton *validate, *cancel;
    };
    void buildEntry(Entry& entry, const QList<FieldBox>& boxes, const QString& suffix,
                    const std::function<void()>& validate);
    void openTray(Entry& entry, const Record& shown);
    /// The open one; null when none is.
    const Entry* openEntry() const;
    /// The unit shown; throws Refusal when there is none.
    const Record& requireUnit() const;
    /// The same, read again from the file.
    const Record& freshUnit();
    void remove();
    void makeLabels();
    void openConformity();
    void changeConformity();
    void showConformityHistory();
    void openImplantation();
    void implant();

    Form& form_;
    Workspace workspace_;
    Database molven_, tri_;
    Edit* number_ = nullptr;
    Edit* reference_ = nullptr;
    Edit* supplierSerial_ = nullptr;
    Edit* supplierReference_ = nullptr;
    Grid* units_ = nullptr;
    QLabel* title_ = nullptr;
    QLabel* place_ = nullptr;
    QLabel* document_ = nullptr;
    QLabel* conformityWords_ = nullptr;
    QStackedWidget* tray_ = nullptr;
    Entry conformity_, implantation_;
    std::optional<Record> trayShown_; ///< what the boxes of the tray showed when it opened
    Criterion listed_;
    std::optional<Record> unit_;
};

} // namespace molven
