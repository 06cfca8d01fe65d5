#pragma once

#include "sales/sales_book.h"

#include <QWidget>

#include <functional>

namespace molven {

class Edit;
class Form;
class Grid;

/// Chooses several units of one article at once, from a first immatriculation to a last one.
class UnitRange : public QWidget {
public:
    UnitRange(Form& form, SalesBook& book);

    /// Throws Refusal when the document may take none of them.
    void open(const Record& header, const QString& reference, const QString& first);

    std::function<void(const QStringList& units)> chosen;
    std::function<void()> left;

private:
    void list();
    void choose();

    Form& form_;
    SalesBook& book_;
    std::optional<Record> header_;
    QString reference_;
    Edit* first_;
    Edit* last_;
    Grid* grid_;
};

} // namespace molven
