#pragma once

#include "sales/count_documents.h"
#include "stock/depot_counts.h"
#include "ui/code_boxes.h"
#include "ui/form.h"

#include <QSet>

class QComboBox;
class QLabel;
class QLayout;

namespace molven {

class Grid;
class RecordPanel;
class ScanBox;

/// A depot counted unit by unit with a scanner, closed with a statement to sign, and settled by documents.
class DepotCountForm : public Form {
public:
    explicit DepotCountForm(Desk& desk);

    void shownAgain() override;

private:
    QLayout* buildScan();
    QLayout* buildFigures();
    QWidget* buildGrid();
    QLayout* buildButtons();
    void buildPanel();
    void boxLeft(const Field& field);
    void openDepot();
    void open(const Record& count);
    void describe();
    void takeDescription();
    bool take(const QString& scanned);
    void showReading(const DepotCount::Reading& reading);
    void takeBack();
    void toggle(const Record& row);
    void tickAll();
    void settleOrClose();
    void closeCount();
    void writeDocuments();
    QString questionOf(const count_documents::Offer& offer) const;
    void print();
    void chooseCount();
    void drop();
    void showCount();
    void showRows();
    QList<Record> rowsInView() const;
    DepotCount& requireCount();
    QString typed(const Field& field) const;

    Workspace workspace_;
    Database molven_;
    std::optional<DepotCount> count_;
    QSet<QString> ticked_; ///< immatriculations
    RecordPanel* panel_ = nullptr;
    std::optional<CodeBoxes> codes_;
    ScanBox* scan_ = nullptr;
    Edit* patient_ = nullptr;
    QLabel* last_ = nullptr;
    QLabel* state_ = nullptr;
    QList<QLabel*> figures_;
    QComboBox* view_ = nullptr;
    Grid* grid_ = nullptr;
    QPushButton* takeBack_ = nullptr;
    QPushButton* again_ = nullptr; ///< a new count of the depot whose last one is closed
    QPushButton* tickAll_ = nullptr;
    QPushButton* close_ = nullptr;
    QPushButton* drop_ = nullptr;
};

} // namespace molven
