#pragma once

#include "data/database.h"
#include "reference/article_updates.h"
#include "reference/parameters.h"
#include "ui/code_table_form.h"

namespace molven {

/// A code table of molven.mdb.
class MolvenTableForm : public CodeTableForm {
protected:
    MolvenTableForm(Desk& desk, const QString& name)
        : CodeTableForm(desk, name),
          molven_(workspace_.open(session().molven())),
          compta_(workspace_.open(session().path(DataFile::Compta))) {}
    void build(CodeTableView view) {
        view.files = {{DataFile::Molven, molven_}, {DataFile::Compta, compta_}};
        CodeTableForm::build(view);
    }

    /// Says in which currency the prices of the screen are; called once it is built.
    void tellCurrency();
    /// Writes a row of a reimbursement list, and its price into the articles when the question is answered yes.
    void saveReimbursement(const article_updates::Reimbursement& list, const Record& record,
                           const std::optional<Record>& before, const QString& question);

    Workspace workspace_;
    Database molven_, compta_;
};

/// The short code lists and the PAN table; the mode word chooses.
class ParameterForm : public MolvenTableForm {
public:
    explicit ParameterForm(Desk& desk);

protected:
    std::optional<Order> printOrder() override;

private:
    void buildList(const ParameterList& list);
    void buildPan();
    void pickFamily(const Field& field, const QString& letter, const QString& title);
    void pushAccount();
    void generatePan();

    const ParameterList* list_;
};

class PaymentModeForm : public MolvenTableForm {
public:
    explicit PaymentModeForm(Desk& desk);
};

/// VAT codes; opens the invoice texts and the currencies.
class InvoicingForm : public MolvenTableForm {
public:
    explicit InvoicingForm(Desk& desk);
};

class InvoiceTextForm : public MolvenTableForm {
public:
    explicit InvoiceTextForm(Desk& desk);
};

class CurrencyForm : public MolvenTableForm {
public:
    explicit CurrencyForm(Desk& desk);
};

/// Chart of accounts.
class AccountForm : public CodeTableForm {
public:
    explicit AccountForm(Desk& desk);

private:
    Workspace workspace_;
};

/// LPP list; a price goes on into the articles, and the articles' codes come from their TIPS codes.
class LppForm : public MolvenTableForm {
public:
    explicit LppForm(Desk& desk);

protected:
    void save(const Record& record, const std::optional<Record>& before) override;
};

class TipsForm : public MolvenTableForm {
public:
    explicit TipsForm(Desk& desk);

protected:
    void save(const Record& record, const std::optional<Record>& before) override;
};

class TariffForm : public MolvenTableForm {
public:
    explicit TariffForm(Desk& desk);

protected:
    void shown() override;
};

class DiscountForm : public MolvenTableForm {
public:
    explicit DiscountForm(Desk& desk);
};

class CommissionRateForm : public MolvenTableForm {
public:
    explicit CommissionRateForm(Desk& desk);
};

/// English labels of the articles.
class EnglishLabelForm : public MolvenTableForm {
public:
    explicit EnglishLabelForm(Desk& desk);
};

} // namespace molven
