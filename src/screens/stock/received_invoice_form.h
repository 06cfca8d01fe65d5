#pragma once

#include "data/database.h"
#include "electronic/invoice.h"
#include "ui/form.h"

class QPlainTextEdit;

namespace molven {

class Grid;

/// A received electronic invoice in words, and its goods by lot, which go to the receipt screen.
class ReceivedInvoiceForm : public Form {
public:
    explicit ReceivedInvoiceForm(Desk& desk);

private:
    QLayout* buildFile();
    void choose();
    void read();
    void receive();

    Workspace workspace_;
    Database molven_;
    electronic::Invoice invoice_;
    Edit* file_ = nullptr;
    QLabel* title_ = nullptr;
    QPlainTextEdit* words_ = nullptr;
    Grid* goods_ = nullptr;
    QPushButton* receive_ = nullptr;
};

} // namespace molven
