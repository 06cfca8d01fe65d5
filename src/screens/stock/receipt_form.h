#pragma once

#include "data/database.h"
#include "stock/receipt.h"
#include "ui/code_boxes.h"
#include "ui/form.h"

class QGroupBox;
class QLabel;
class QLayout;

namespace molven {

struct Gs1Code;
class RecordPanel;
class SerialList;
class UnitCard;

/// Units: receipt of N units of an article, typed or scanned, and beside it the units themselves.
class ReceiptForm : public Form {
public:
    explicit ReceiptForm(Desk& desk);

    /// Puts a receipt prepared elsewhere into the boxes, unless the user keeps what is typed there.
    void fill(const Receipt& receipt);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool hasUnsavedWork() const override;
    QPushButton* validation() const override;

private:
    QWidget* buildReceipt();
    QLayout* quantityRow(QWidget* box);
    void setPickers();
    void setScans();
    void showArticle();
    void presetFrom(const Record& article);
    void showByType(const Record& article);
    Receipt typed() const;
    void receive();
    /// What stands in the boxes.
    QStringList contents() const;
    /// True when nothing typed would be lost, or the user gives it up.
    bool mayDiscard();
    void clearUnit();
    void clearReceipt();

    bool takeScan(Edit* edit);
    void requireSameGoods(const Gs1Code& code, const std::optional<Record>& article) const;
    int quantity() const;
    void listSerial();
    void quantityTyped();
    void startChanging(const Record& unit);
    void showMode();
    void readAgain();
    void writeChange();

    Workspace workspace_;
    UnitFiles files_;
    Database molven_;
    QGroupBox* box_ = nullptr;
    RecordPanel* panel_ = nullptr;
    std::optional<CodeBoxes> codes_;
    Edit* quantity_ = nullptr;
    SerialList* serials_ = nullptr;
    QPushButton* fresh_ = nullptr;
    QPushButton* validate_ = nullptr;
    QWidget* createdWords_ = nullptr; ///< the two, with their captions
    QLabel* created_ = nullptr;
    QLabel* createdLast_ = nullptr;
    UnitCard* units_ = nullptr;
    bool isTradeGoods_ = false;             ///< the article of the receipt, whose lot must be known
    QString scannedEan_, scannedReference_; ///< of the last scan, and the article found by it
    QString presetReference_;               ///< the supplier's reference that the article brought
    QStringList untouched_;                 ///< the boxes as they were before the user typed
    std::optional<Record> changed_;         ///< the unit being modified, as read
};

} // namespace molven
