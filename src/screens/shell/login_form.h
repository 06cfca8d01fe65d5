#pragma once

#include "ui/form.h"

class QLabel;

namespace molven {

/// First window: checks the workstation's password, then opens the main menu.
class LoginForm : public Form {
public:
    explicit LoginForm(Desk& desk);

private:
    /// Reads the company of the installation, and says so when it cannot be read.
    bool readCompany();
    void login();
    void enter();

    bool companyRead_ = false;
    Edit* word_;
    QLabel* caption_;
    QLabel* company_;
    QPushButton* ok_;
    QPushButton* cancel_;
    QPushButton* personalised_;
};

} // namespace molven
