#pragma once

#include "sales/sales_book.h"
#include "screens/sales/tray_part.h"
#include "ui/record_model.h"

namespace molven {

struct DocumentLayout;
class Edit;
class Form;
class Grid;

/// Columns in which a unit of an article is chosen for a document: its whole designation, then what tells it from its
/// like.
QList<GridColumn> unitChoiceColumns();

/// Chooses several units of one article at once, from a first immatriculation to a last one.
class UnitRange : public TrayPart {
public:
    UnitRange(Form& form, SalesBook& book, const DocumentLayout& layout);

    /// Throws Refusal when the document may take none of them.
    void open(const Record& header, const QString& reference, const QString& first);

    QPushButton* validation() const override { return validate_; }
    void reread(const Record& header) override { header_ = header; }

    std::function<void(const QStringList& units)> chosen;

private:
    void list();
    void choose();

    Form& form_;
    SalesBook& book_;
    const DocumentLayout& layout_;
    std::optional<Record> header_;
    QString reference_;
    Edit* first_;
    Edit* last_;
    Grid* grid_;
    QPushButton* validate_;
};

} // namespace molven
