#pragma once

#include "data/database.h"
#include "ui/record_form.h"

namespace molven {

class DocumentShelf;

/// Suppliers.
class SupplierForm : public RecordForm {
public:
    explicit SupplierForm(Desk& desk);

protected:
    Record blank() override;
    std::optional<Record> find(const QString& key) override;
    void write(const Record& record, const std::optional<Record>& before) override;
    void erase(const Record& record) override;
    QString nameOf(const Record& record) const override;
    void stateChanged() override;

private:
    void keepFolder(const QString& folder);

    Workspace workspace_;
    Database molven_;
    DocumentShelf* documents_ = nullptr;
};

} // namespace molven
