#pragma once

#include "data/database.h"
#include "ui/record_form.h"

class QLabel;

namespace molven {

class DocumentShelf;

/// Clients: hospitals and clinics.
class ClientForm : public RecordForm {
public:
    explicit ClientForm(Desk& desk);

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
    QLabel* country_ = nullptr;
};

} // namespace molven
