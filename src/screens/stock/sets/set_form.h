#pragma once

#include "sales/set_journeys.h"
#include "stock/set_types.h"
#include "ui/code_table_form.h"
#include "ui/opened_on.h"

namespace molven {

class SetComposition;
class SetShelf;

/// Ancillary sets: their types, what each is made of, and the physical sets with their units.
class SetForm : public CodeTableForm {
public:
    explicit SetForm(Desk& desk);

protected:
    void shown() override;
    void save(const Record& record, const std::optional<Record>& before) override;
    void erase(references::Files& files, const Record& record) override;
    void print() override;
    bool hasUnsavedWork() const override;

private:
    QWidget* workbench();
    void wireLists();
    void copyTypedArticle();

    SalesBook notes_;
    set_types::Files files_;
    set_journeys::Files journeys_;
    QString shownType_, copied_;
    SetComposition* composition_ = nullptr;
    SetShelf* shelf_ = nullptr;
};

/// Where every set lies, what it lacks and what expires: what is urgent first.
class SetStateForm : public Form, public OpenedOn {
public:
    explicit SetStateForm(Desk& desk);

    void shownAgain() override { refresh(); }
    void bringUp(const QString& serial) override;

private:
    void refresh();

    Workspace workspace_;
    Database molven_, ancillaire_;
    Grid* grid_;
    QLabel* count_;
};

} // namespace molven
