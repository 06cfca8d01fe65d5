#pragma once

#include <QDialog>

class QButtonGroup;
class QLabel;
class QLineEdit;

namespace molven {

class Prompt;

/// Shown by a program that finds no installation beside it: create one, open one, convert one, try the demonstration.
/// Every deed is whole or leaves nothing; what is refused is said within the window.
class FirstStart : public QDialog {
public:
    enum class Deed { Create, Open, Convert, Demonstrate };

    explicit FirstStart(Prompt& prompt);
    /// The program folder to work in, once the dialog was accepted.
    const QString& home() const { return home_; }

private:
    void addBoxes();
    void adapt();
    void proceed();
    void carryOut(const QString& folder);
    void convert(const QString& folder);
    Deed deed() const;

    Prompt& prompt_;
    QButtonGroup* deeds_;
    QLineEdit* folder_;
    QLineEdit* code_;
    QLineEdit* name_;
    QLineEdit* source_;
    QLabel* told_;
    QString home_;
};

} // namespace molven
