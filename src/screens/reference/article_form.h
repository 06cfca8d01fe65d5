#pragma once

#include "reference/articles.h"
#include "stock/movements.h"
#include "ui/record_form.h"

class QComboBox;
class QLabel;

namespace molven {

/// Articles: creation, change, deletion, look-up, and the units in stock of one.
class ArticleForm : public RecordForm {
public:
    explicit ArticleForm(Desk& desk);

protected:
    Record blank() override;
    std::optional<Record> find(const QString& key) override;
    void write(const Record& record, const std::optional<Record>& before) override;
    void erase(const Record& record) override;
    QString nameOf(const Record& record) const override;
    void stateChanged() override;
    void shown() override;
    bool hasFurtherChanges() const override;

private:
    void buildFollowUp();
    void orderTabs();
    void setPickers();
    void adaptToKind();
    void showUnitsInStock();
    void showMovements();

    Workspace workspace_;
    Database molven_, compta_, gencode_;
    MovementFiles movementFiles_;
    Edit* kind_ = nullptr;
    Edit* stocked_ = nullptr;
    Edit* followed_ = nullptr;
    QComboBox* reimbursement_ = nullptr;
    QLabel* followUp_ = nullptr;
    RecordPanel* severalLpp_ = nullptr;
    articles::Entry loaded_; ///< what the entries outside the panel showed before they were touched
};

} // namespace molven
