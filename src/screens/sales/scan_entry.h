#pragma once

#include "sales/sales_book.h"
#include "screens/sales/tray_part.h"

class QLabel;

namespace molven {

class Form;
class ScanBox;

/// Lines by scanner alone: each code read adds its unit's line to the document, the last can be taken back.
class ScanEntry : public TrayPart {
public:
    ScanEntry(Form& form, SalesBook& book);

    void open(const Record& header);

    QPushButton* validation() const override { return nullptr; }
    QString unsaved() const override;
    void reread(const Record& header) override { header_ = header; }

private:
    bool add(const QString& scanned);
    void takeBack();
    void showLast(const QString& text);

    Form& form_;
    SalesBook& book_;
    std::optional<Record> header_;
    QStringList taken_; ///< immatriculations, the last read last
    ScanBox* box_;
    QLabel* last_;
    QPushButton* takeBack_;
};

} // namespace molven
