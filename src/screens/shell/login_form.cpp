#include "screens/shell/login_form.h"

#include "shell/access.h"
#include "shell/startup.h"
#include "ui/edit.h"
#include "ui/style.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace molven {

LoginForm::LoginForm(Desk& desk)
    : Form(desk, QStringLiteral("Tcsecret")),
      word_(new Edit(this)),
      caption_(new QLabel(QStringLiteral("&Mot de passe :"), this)),
      company_(new QLabel(this)) {
    word_->setObjectName(QStringLiteral("Text1"));
    word_->setEchoMode(QLineEdit::Password);
    word_->setMaxLength(40);
    caption_->setObjectName(QStringLiteral("Label1"));
    caption_->setBuddy(word_);
    company_->setObjectName(QStringLiteral("Label2"));
    company_->setText(QStringLiteral("Accès à MOLVEN"));
    ok_ = button(QStringLiteral("Btok"), QStringLiteral("&OK"), [this] { login(); });
    cancel_ = leaveButton(QStringLiteral("Btannuler"), QStringLiteral("&Annuler"), [this] { close(); });
    personalised_ = button(QStringLiteral("Cmdok"), QStringLiteral("&Continuer"), [this] { enter(); });
    personalised_->hide();

    auto* layout = new QGridLayout(this);
    style::letBreathe(*layout);
    layout->addWidget(company_, 0, 0, 1, 3);
    layout->addWidget(caption_, 1, 0);
    layout->addWidget(word_, 1, 1, 1, 2);
    layout->addWidget(ok_, 2, 1);
    layout->addWidget(cancel_, 2, 2);
    layout->addWidget(personalised_, 3, 1, 1, 2);
    setDefaultButton(ok_);
    setCancelButton(cancel_);
    resize(380, 150);
    applyTitle(QStringLiteral("Sécurité"));
    if (desk.isAlreadyRunning()) {
        prompt().tell(QStringLiteral("Ce programme est déjà lancé"), QStringLiteral("Applicatif MOLVEN"), Icon::Stop);
        QTimer::singleShot(0, this, [this] { this->desk().quit(); });
        return;
    }
    readCompany();
}

bool LoginForm::readCompany() {
    try {
        for (const QString& file : startup::finishCompactions(session()))
            notify(QStringLiteral("Le recompactage interrompu de %1 a été terminé").arg(file));
        startup::readCompany(session());
        companyRead_ = true;
    } catch (const Refusal& refusal) {
        prompt().tell(refusal.text, {}, Icon::Warning);
    } catch (const DataError& error) {
        prompt().tell(QStringLiteral(" err: %1 - %2").arg(error.number).arg(error.description), {}, Icon::Stop);
    }
    return companyRead_;
}

void LoginForm::login() {
    if (!companyRead_ && !readCompany()) return;
    try {
        switch (access::login(session(), word_->text())) {
        case access::Login::Stored:
            return;
        case access::Login::Accepted:
            return enter();
        case access::Login::Personalise:
            break;
        }
    } catch (const Refusal& refusal) {
        if (word_->text().trimmed().isEmpty())
            prompt().tell(refusal.text);
        else
            prompt().tell(refusal.text, QStringLiteral("Erreur"), Icon::Stop);
        word_->clear();
        word_->setFocus();
        return;
    }
    prompt().tell(QStringLiteral("Veuillez personnaliser votre mot de passe"));
    ok_->hide();
    cancel_->hide();
    word_->setEnabled(false);
    caption_->setText(QStringLiteral("Changez le mot de passe par Fichiers / Mot de passe. Société :"));
    company_->setText(session().code_soc);
    personalised_->show();
    setDefaultButton(personalised_);
    personalised_->setFocus();
}

void LoginForm::enter() {
    if (desk().open(QStringLiteral("Tmenu"))) close();
}

} // namespace molven
