#include "screens/shell/secret_forms.h"

#include "ui/edit.h"
#include "ui/style.h"

#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

namespace {

Edit* secretBox(const QString& name, QWidget* parent) {
    auto* box = new Edit(parent);
    box->setObjectName(name);
    box->setEchoMode(QLineEdit::Password);
    box->setMaxLength(40);
    return box;
}

void layOut(QWidget* form, const QList<std::pair<QString, Edit*>>& boxes, QPushButton* ok, QPushButton* cancel) {
    auto* layout = new QGridLayout(form);
    style::letBreathe(*layout);
    int row = 0;
    for (const auto& [caption, box] : boxes) {
        auto* label = new QLabel(caption, form);
        label->setBuddy(box);
        box->setFixedWidth(style::boxWidth(24));
        layout->addWidget(label, row, 0);
        layout->addWidget(box, row++, 1, 1, 2);
    }
    layout->addWidget(ok, row, 1);
    layout->addWidget(cancel, row, 2);
    style::keepTogether(*layout);
    form->resize(420, form->sizeHint().height());
}

} // namespace

CurrentSecretForm::CurrentSecretForm(Desk& desk, const QString& name, access::Secret secret, const QString& caption,
                                     const QString& next)
    : Form(desk, name), word_(secretBox(QStringLiteral("Text1"), this)) {
    auto* ok = button(QStringLiteral("Btok"), QStringLiteral("&OK"), [this, secret, next] {
        try {
            access::checkCurrent(session(), secret, word_->text());
        } catch (const Refusal& refusal) {
            const bool empty = word_->text().trimmed().isEmpty();
            prompt().tell(refusal.text, empty ? QString() : QStringLiteral("Erreur"),
                          empty ? Icon::Information : Icon::Stop);
            focusField(refusal.field);
            return;
        }
        this->desk().open(next);
        close();
    });
    auto* cancel = leaveButton(QStringLiteral("Btannuler"), QStringLiteral("&Annuler"), [this] { close(); });
    layOut(this,
           {{secret == access::Secret::Password ? QStringLiteral("&Mot de passe actuel :")
                                                : QStringLiteral("&Code gestionnaire actuel :"),
             word_}},
           ok, cancel);
    setDefaultButton(ok);
    setCancelButton(cancel);
    if (secret == access::Secret::Password) {
        // The manager code has no menu entry of its own.
        auto* other = button(QStringLiteral("Cmdspe"), QStringLiteral("Code &gestionnaire..."), [this] {
            this->desk().open(QStringLiteral("Tcodspe1"));
            close();
        });
        static_cast<QGridLayout*>(layout())->addWidget(other, 2, 1, 1, 2);
    }
    if (!QFile::exists(session().programFile(QStringLiteral("CODGES.SVI")))) word_->put(access::InitialWord);
    applyTitle(caption);
}

NewSecretForm::NewSecretForm(Desk& desk, const QString& name, access::Secret secret, const QString& caption)
    : Form(desk, name),
      word_(secretBox(QStringLiteral("Text1"), this)),
      again_(secretBox(QStringLiteral("Text2"), this)) {
    auto* ok = button(QStringLiteral("Btok"), QStringLiteral("&OK"), [this, secret] {
        try {
            access::change(session(), secret, word_->text(), again_->text());
            close();
        } catch (const Refusal& refusal) {
            prompt().tell(refusal.text, QStringLiteral("Erreur"), Icon::Stop);
            focusField(refusal.field);
        }
    });
    auto* cancel = leaveButton(QStringLiteral("Btannuler"), QStringLiteral("&Annuler"), [this] { close(); });
    layOut(this, {{QStringLiteral("&Nouvelle valeur :"), word_}, {QStringLiteral("&Encore une fois :"), again_}}, ok,
           cancel);
    setDefaultButton(ok);
    setCancelButton(cancel);
    applyTitle(caption);
    if (!desk.isAlreadyRunning()) return;
    prompt().tell(QStringLiteral("Ce programme est déjà lancé"), QStringLiteral("Applicatif Ronce"), Icon::Stop);
    allow(ok, false, QStringLiteral("Ce programme est déjà lancé"));
}

} // namespace molven
