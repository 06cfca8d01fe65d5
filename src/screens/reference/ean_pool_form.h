#pragma once

#include "data/database.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class Grid;

/// The pool of EAN codes: which are free, which article took which.
class EanPoolForm : public Form {
public:
    explicit EanPoolForm(Desk& desk);

private:
    void add();
    void remove();
    void refresh();

    Workspace workspace_;
    Database gencode_;
    Grid* grid_;
    Edit* code_;
    Edit* quantity_;
    QLabel* count_;
};

/// Derives the LPP codes from the TIPS codes, and prints what could not be told.
class LppCodificationForm : public Form {
public:
    explicit LppCodificationForm(Desk& desk);

private:
    void run();

    QLabel* step_;
};

} // namespace molven
