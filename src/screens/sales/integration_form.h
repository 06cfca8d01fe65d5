#pragma once

#include "data/database.h"
#include "stock/unit_integration.h"
#include "ui/form.h"
#include "ui/grid.h"

class QLabel;

namespace molven {

/// Takes the units of an exchange file into the stock.
class IntegrationForm : public Form {
public:
    explicit IntegrationForm(Desk& desk);

private:
    Edit* box(class QHBoxLayout& row, Edit* edit, const char* name, const char* caption);
    void read();
    void chooseFile();
    void show(const QList<Record>& units);
    void readFrom(const QString& path);
    void integrate();
    void tell(const unit_integration::Outcome& outcome);

    Workspace workspace_;
    UnitFiles files_;
    Edit* number_;
    Edit* supplier_;
    Edit* ordered_;
    Edit* delivered_;
    Grid* list_;
    QLabel* count_;
    QList<Record> units_;
};

} // namespace molven
