#pragma once

#include "accounting/invoice_listing.h"
#include "printing/letter.h"
#include "ui/selection_form.h"

namespace molven {

/// Invoices and credit notes of some clients, listed; a chosen one is brought up.
class InvoiceListForm : public SelectionForm {
protected:
    InvoiceListForm(Desk& desk, const QString& name);
    /// Builds the screen with these boxes behind those of the clients.
    void buildList(const QString& title, const QList<CriterionBox>& further, const QList<GridColumn>& columns);
    invoice_listing::Clients typedClients() const;
    /// The typed selection, shown.
    void list();
    virtual QList<Record> found() = 0;
    virtual void print() = 0;

    Workspace workspace_;
    invoice_listing::Files files_;
    QList<Record> invoices_;
    Period period_;

private:
    void openDocument(const Record& header);
};

/// Statements of account: a page a client.
class StatementForm : public InvoiceListForm {
public:
    explicit StatementForm(Desk& desk);

private:
    QList<Record> found() override;
    void print() override;
    Letter letterTo(const QString& client, const QList<Record>& invoices);
};

/// Invoices by due date, client or payment mode.
class DueDateForm : public InvoiceListForm {
public:
    explicit DueDateForm(Desk& desk);

private:
    QList<Record> found() override;
    void print() override;
    invoice_listing::Grouping grouping() const;
    /// The group of an invoice in words.
    QString groupOf(const Record& header);
};

} // namespace molven
