#pragma once

#include "ui/edit.h"

namespace molven {

class Form;

/// A box for scan after scan: what ends one (Return or Tab) takes it and makes room for the next. A refused scan
/// sounds, says why in the line of notices without stopping the hands, and gives way to the next one.
class ScanBox : public Edit {
public:
    /// `take` answers whether the text was taken; it may throw Refusal.
    ScanBox(Form& form, const QString& name, const std::function<bool(const QString&)>& take, QWidget* parent);

protected:
    bool event(QEvent* event) override;

private:
    bool takeScan();

    Form& form_;
    std::function<bool(const QString&)> take_;
};

} // namespace molven
