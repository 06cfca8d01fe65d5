#pragma once

#include "sales/sales_book.h"
#include "screens/sales/tray_part.h"
#include "ui/code_boxes.h"

class QLabel;

namespace molven {

class Form;
class RecordPanel;

/// The footer of a document: discounts, carriage, payment, and the totals that follow from them.
class FooterEntry : public TrayPart {
public:
    FooterEntry(Form& form, SalesBook& book);

    void open(const Record& document);
    QPushButton* validation() const override { return validate_; }
    QString unsaved() const override;
    void follow(const Record& document) override;
    void reread(const Record& document) override;

private:
    void fill(const Record& footer);
    void validate();

    Form& form_;
    SalesBook& book_;
    const DocumentHeaders& table_;
    Record document_; ///< as the boxes were filled from it
    RecordPanel* boxes_;
    CodeBoxes codes_;
    QPushButton* validate_;
    QLabel* otherVat_;
};

} // namespace molven
