#pragma once

#include "shell/access.h"
#include "ui/form.h"

namespace molven {

/// Asks the current password or manager code, then opens the window for the new one.
class CurrentSecretForm : public Form {
protected:
    CurrentSecretForm(Desk& desk, const QString& name, access::Secret secret, const QString& caption,
                      const QString& next);

private:
    Edit* word_;
};

/// Takes the new password or manager code, typed twice.
class NewSecretForm : public Form {
protected:
    NewSecretForm(Desk& desk, const QString& name, access::Secret secret, const QString& caption);

private:
    Edit* word_;
    Edit* again_;
};

class CurrentPasswordForm : public CurrentSecretForm {
public:
    explicit CurrentPasswordForm(Desk& desk)
        : CurrentSecretForm(desk, QStringLiteral("tcmodcs1"), access::Secret::Password,
                            QStringLiteral("Accès à la modification du mot de passe"), QStringLiteral("Tcmodcs2")) {}
};

class NewPasswordForm : public NewSecretForm {
public:
    explicit NewPasswordForm(Desk& desk)
        : NewSecretForm(desk, QStringLiteral("Tcmodcs2"), access::Secret::Password,
                        QStringLiteral("Enregistrement d'un nouveau mot de passe")) {}
};

class CurrentManagerCodeForm : public CurrentSecretForm {
public:
    explicit CurrentManagerCodeForm(Desk& desk)
        : CurrentSecretForm(desk, QStringLiteral("Tcodspe1"), access::Secret::ManagerCode,
                            QStringLiteral("Accès à la modification du code gestionnaire"),
                            QStringLiteral("Tcodspe2")) {}
};

class NewManagerCodeForm : public NewSecretForm {
public:
    explicit NewManagerCodeForm(Desk& desk)
        : NewSecretForm(desk, QStringLiteral("Tcodspe2"), access::Secret::ManagerCode,
                        QStringLiteral("Enregistrement d'un nouveau code gestionnaire")) {}
};

} // namespace molven
