#pragma once

#include "data/database.h"
#include "stock/patient_enquiry.h"
#include "ui/form.h"

class QLabel;

namespace molven {

class CriteriaPanel;
class Grid;

/// Which patient received which unit. Its twin reads the virtual stock.
class PatientForm : public Form {
public:
    explicit PatientForm(Desk& desk) : PatientForm(desk, QStringLiteral("T_tracab"), DataFile::Molven) {}

protected:
    PatientForm(Desk& desk, const QString& name, DataFile units);

private:
    void setPickers();
    QLayout* buttons();
    PatientEnquiry typed() const;
    const PatientEnquiry& requireSelection() const;
    void select();
    void keep();
    void print();
    void makeLabels();

    Workspace workspace_;
    Database molven_, units_, tri_;
    const bool isVirtual_;
    CriteriaPanel* criteria_ = nullptr;
    Grid* grid_ = nullptr;
    QLabel* words_ = nullptr;
    QLabel* count_ = nullptr;
    std::optional<PatientEnquiry> selection_;
};

class VirtualPatientForm : public PatientForm {
public:
    explicit VirtualPatientForm(Desk& desk) : PatientForm(desk, QStringLiteral("T_tracabv"), DataFile::Virtuel) {}
};

} // namespace molven
