#pragma once

#include "screens/sales/print_screen.h"
#include "ui/selection_form.h"

namespace molven {

/// Prints documents of one kind: those of a year and a range of numbers, or the one that its entry screen hands over.
/// The mode word begins with the kind's.
class PrintForm : public SelectionForm {
public:
    PrintForm(Desk& desk, const PrintScreen& screen);

    /// Asks for that document.
    void take(const Record& header);

private:
    papers::Range typed() const;
    /// What the documents are looked for by.
    QStringList criteriaTyped() const;
    /// Finds what is asked for, and shows it.
    void select();
    /// The documents in the list, found anew when something else is asked for by now.
    QList<papers::Paper> wanted();
    PrintJob job(const QList<papers::Paper>& documents);
    void preview();
    void print();
    void savePdf();
    void saveElectronic();
    /// The folder that files are saved in; made where it is missing.
    QString folder();
    void tellSaved(qsizetype files);

    const PrintScreen& screen_;
    SalesBook book_;
    QList<papers::Paper> found_;
    QStringList asked_; ///< the criteria that found them
};

} // namespace molven
