#pragma once

#include "sales/delivery_exchange.h"
#include "ui/form.h"
#include "ui/grid.h"

class QLabel;

namespace molven {

/// Chooses the units of delivery notes and writes them as a file for another installation, or for a partner without the
/// program.
class ExchangeForm : public Form {
protected:
    enum class Kind { Units, Extraction };
    ExchangeForm(Desk& desk, const QString& name, Kind kind);

private:
    void add();
    void save();
    QString saveUnits();
    void send();
    void showUnits();

    const Kind kind_;
    delivery_exchange::Files files_;
    Edit* number_;
    Edit* address_;
    Grid* list_;
    QLabel* count_;
    QString note_;  ///< last one added
    QString saved_; ///< path of the file last written
};

class DeliveryDiskForm : public ExchangeForm {
public:
    explicit DeliveryDiskForm(Desk& desk) : ExchangeForm(desk, QStringLiteral("T_livdk"), Kind::Units) {}
};
class DeliveryExtractionForm : public ExchangeForm {
public:
    explicit DeliveryExtractionForm(Desk& desk) : ExchangeForm(desk, QStringLiteral("T_extract"), Kind::Extraction) {}
};

} // namespace molven
