#pragma once

#include "sales/sales_book.h"
#include "screens/sales/tray_part.h"

namespace molven {

class Form;
class RecordPanel;

/// The footer of a document: discounts, carriage, payment, and the totals that follow from them.
class FooterEntry : public TrayPart {
public:
    FooterEntry(Form& form, SalesBook& book);

    void open(const Record& document);
    /// The document's totals anew, after its lines changed.
    void show(const Record& document);

    QPushButton* validation() const override { return validate_; }
    QString unsaved() const override;

    std::function<void()> written; ///< the footer and the totals changed

private:
    void validate();

    Form& form_;
    SalesBook& book_;
    const DocumentHeaders& table_;
    Record document_; ///< as the boxes were filled from it
    RecordPanel* boxes_;
    QPushButton* validate_;
};

} // namespace molven
