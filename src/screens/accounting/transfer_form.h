#pragma once

#include "accounting/transfer.h"
#include "ui/form.h"

class QComboBox;

namespace molven {

class DateBox;
class Edit;
class Grid;

/// Invoices and credit notes into the sales journal: controlled first, then transferred once; the files for the
/// accounting programs of this transfer and of earlier ones.
class TransferForm : public Form {
public:
    explicit TransferForm(Desk& desk);

private:
    QLayout* buildTop();
    QLayout* buildFiles();
    DateBox* dateBox(const QString& name);
    void control();
    void run();
    void showEntries(Database file, const Criterion& criterion);
    void showLeftOut(const QList<transfer::LeftOut>& leftOut);
    void openClientAccounts();
    void fillPast();
    /// The number of the transfer chosen in the list. Throws Refusal without one.
    QString chosen() const;
    void showPast();
    void writeFiles();
    void writeLegalFile();
    void print(const QString& number);

    Workspace workspace_;
    transfer::Files files_;
    std::optional<transfer::Control> control_;
    QString controlledDate_; ///< as typed
    DateBox* until_ = nullptr;
    DateBox* yearFrom_ = nullptr;
    DateBox* yearTo_ = nullptr;
    QLabel* count_ = nullptr;
    Grid* entries_ = nullptr;
    Grid* leftOut_ = nullptr;
    QComboBox* past_ = nullptr;
};

} // namespace molven
