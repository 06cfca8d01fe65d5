#pragma once

#include "data/database.h"
#include "stock/patient_enquiry.h"
#include "ui/form.h"

class QComboBox;
class QLabel;

namespace molven {

class Grid;

/// Which patient received which unit. Its twin reads the virtual stock.
class PatientForm : public Form {
public:
    explicit PatientForm(Desk& desk) : PatientForm(desk, QStringLiteral("T_tracab"), DataFile::Molven) {}

protected:
    PatientForm(Desk& desk, const QString& name, DataFile units);

private:
    QLayout* criteria();
    QLayout* buttons();
    PatientEnquiry typed() const;
    const PatientEnquiry& requireSelection() const;
    void select();
    void keep();
    void print();
    void makeLabels();

    Workspace workspace_;
    Database molven_, units_, tri_;
    QHash<QString, Edit*> boxes_;
    QComboBox* sort_ = nullptr;
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
