#pragma once

#include "data/database.h"
#include "stock/receipt.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class RecordPanel;
class UnitCard;

/// Units: receipt of N units of an article, typed or scanned, and beside it the units themselves.
class ReceiptForm : public Form {
public:
    explicit ReceiptForm(Desk& desk);

private:
    QWidget* buildReceipt();
    void setPickers();
    void showArticle();
    void showByType(const Record& article);
    Receipt typed() const;
    receipts::Progress progress();
    void receive();
    void clearUnit();
    void clearReceipt();

    bool takeScan(Edit* edit);
    void startChanging(const Record& unit);
    void writeChange();

    Workspace workspace_;
    Database molven_;
    RecordPanel* panel_ = nullptr;
    Edit* quantity_ = nullptr;
    QLabel* created_ = nullptr;
    QLabel* createdLast_ = nullptr;
    UnitCard* units_ = nullptr;
    bool isTradeGoods_ = false; ///< the article of the receipt, whose lot must be known
    QString scannedEan_;
    std::optional<Record> changed_; ///< the unit being modified, as read
};

} // namespace molven
