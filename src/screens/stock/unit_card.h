#pragma once

#include "data/database.h"

#include <QGroupBox>

#include <functional>

class QLabel;
class QStackedWidget;

namespace molven {

class Edit;
class Form;
class Grid;

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

    std::function<void(const Record& unit)> changeWanted;

private:
    QLayout* buildSearch();
    QLayout* buildButtons();
    void buildTray();
    Edit* searchBox(const QString& name, int characters, const std::function<void()>& find);
    void setPickers();
    void findByNumber();
    void findByReference();
    void findBySupplierSerial();
    void findBySupplierReference();
    void show(const Record& unit);
    const Record& requireUnit() const;
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
    QLabel* place_ = nullptr;
    QLabel* document_ = nullptr;
    QLabel* conformity_ = nullptr;
    QStackedWidget* tray_ = nullptr;
    Edit* conformityCode_ = nullptr;
    Edit* cause_ = nullptr;
    Edit* patient_ = nullptr;
    Edit* hospital_ = nullptr;
    Edit* date_ = nullptr;
    Criterion listed_;
    std::optional<Record> unit_;
};

} // namespace molven
