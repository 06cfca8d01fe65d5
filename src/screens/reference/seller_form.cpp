#include "screens/reference/seller_form.h"

#include "reference/countries.h"
#include "reference/identifiers.h"
#include "reference/seller.h"
#include "ui/record_panel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace molven {

namespace {

constexpr int Wide = 34;

QList<BoxGroup> sellerGroups() {
    const auto& e = stremetteur;
    return {{QStringLiteral("Société"),
             {{&e.emt_nom, QStringLiteral("Nom :"), {}, Wide},
              {&e.emt_jur, QStringLiteral("Forme juridique :"), {}, 12},
              {.field = &e.emt_cap, .caption = QStringLiteral("Capital :"), .characters = 12, .beside = true},
              {&e.emt_siret, QStringLiteral("SIRET :"), {}, 16},
              {.field = &e.emt_ape, .caption = QStringLiteral("APE :"), .beside = true},
              {&e.emt_rcs, QStringLiteral("Registre du commerce :"), {}, Wide},
              {&e.emt_tva, QStringLiteral("N° TVA :"), {}, 16}}},
            {QStringLiteral("Adresse :"),
             {{&e.emt_l1, {}, {}, Wide},
              {&e.emt_l2, {}, {}, Wide},
              {&e.emt_l3, {}, {}, Wide},
              {&e.emt_cp, QStringLiteral("Code postal :"), {}, 8},
              {.field = &e.emt_vil, .caption = QStringLiteral("Ville :"), .characters = 21, .beside = true},
              {&e.emt_pay, QStringLiteral("Pays :")}}},
            {QStringLiteral("Téléphone et courriel"),
             {{&e.emt_tel, QStringLiteral("Téléphone :"), {}, 14},
              {.field = &e.emt_fax, .caption = QStringLiteral("Télécopie :"), .characters = 14, .beside = true},
              {&e.emt_mail, QStringLiteral("Courriel :"), {}, Wide},
              {&e.emt_web, QStringLiteral("Site :"), {}, Wide}}},
            {QStringLiteral("Banque"),
             {{&e.emt_bque, QStringLiteral("Banque :"), {}, Wide},
              {&e.emt_iban, QStringLiteral("IBAN :"), {}, Wide},
              {&e.emt_bic, QStringLiteral("BIC :"), {}, 14}}},
            {QStringLiteral("Sur les factures"),
             {{&e.emt_pen, QStringLiteral("Pénalités de retard :"), {}, Wide},
              {&e.emt_esc, QStringLiteral("Escompte :"), {}, Wide},
              {&e.emt_exo, QStringLiteral("Motif d'exonération :"), {}, Wide}}}};
}

} // namespace

SellerForm::SellerForm(Desk& desk)
    : Form(desk, QStringLiteral("T_emetteur")),
      molven_(workspace_.open(session().molven())),
      panel_(new RecordPanel(sellerGroups(), 2, this)),
      state_(*this, {}) {
    panel_->markRequired({&stremetteur.emt_nom});
    state_.isTyped = [this] { return panel_->differsFrom(*state_.record()); };
    for (const FieldBox& box : panel_->boxes()) bind(box.field->name, panel_->edit(*box.field));
    Edit* country = panel_->edit(stremetteur.emt_pay);
    onLeft(country, [this, country] {
        const QString name = countries::name(identifiers::compact(country->value()));
        panel_->setHint(stremetteur.emt_pay, name.isEmpty() ? QStringLiteral("Pays inconnu") : name);
    });
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(button(QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { validate(); }));
    row->addWidget(leaveButton(QStringLiteral("cmdannule"), QStringLiteral("A&nnuler"), [this] { show(); }));
    row->addWidget(leaveButton(QStringLiteral("Cmdquit"), QStringLiteral("&Quitter"), [this] { close(); }));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(panel_);
    layout->addStretch();
    layout->addLayout(row);
    applyTitle(QStringLiteral("Emetteur des documents"));
    show();
    panel_->edit(stremetteur.emt_nom)->setFocus();
}

void SellerForm::show() {
    state_.view(seller::read(molven_));
    panel_->load(*state_.record());
    panel_->setHint(stremetteur.emt_pay, countries::name((*state_.record())[stremetteur.emt_pay]));
}

void SellerForm::validate() {
    Record typed = *state_.record();
    panel_->store(typed);
    if (!state_.change([&] { seller::save(molven_, typed, *state_.record()); }, *panel_,
                       [this] { return std::optional(seller::read(molven_)); }))
        return;
    show();
    notify(QStringLiteral("Emetteur enregistré"));
}

} // namespace molven
