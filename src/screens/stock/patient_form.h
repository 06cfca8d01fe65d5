#pragma once

#include "data/database.h"
#include "stock/patient_enquiry.h"
#include "ui/selection_form.h"

namespace molven {

/// Which patient received which unit. Its twin reads the virtual stock.
class PatientForm : public SelectionForm {
public:
    explicit PatientForm(Desk& desk) : PatientForm(desk, QStringLiteral("T_tracab"), DataFile::Molven) {}

protected:
    PatientForm(Desk& desk, const QString& name, DataFile units);

private:
    PatientEnquiry typed() const;
    void select();
    Recordset selected();
    void keep();
    void print();
    void makeLabels();

    Workspace workspace_;
    Database molven_;
    const patient_enquiry::Files units_;
    Database tri_;
    const bool isVirtual_;
    PatientEnquiry enquiry_; ///< whose units are shown
};

class VirtualPatientForm : public PatientForm {
public:
    explicit VirtualPatientForm(Desk& desk) : PatientForm(desk, QStringLiteral("T_tracabv"), DataFile::Virtuel) {}
};

} // namespace molven
