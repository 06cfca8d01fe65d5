#include "screens/reference/article_form.h"

#include "data/format.h"
#include "dossier/references.h"
#include "reference/parameters.h"
#include "reference/tariff_tables.h"
#include "screens/price_notice.h"
#include "screens/shell/trail_form.h"
#include "screens/stock/movement_form.h"
#include "stock/units.h"
#include "ui/access_keys.h"
#include "ui/pick_lists.h"
#include "ui/style.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace molven {

namespace {

/// A value to look at, on the line of the one before.
FieldBox besideIt(const Field& field, const char* caption, const char* control, int characters,
                  const QString& pattern = {}) {
    return {.field = &field,
            .caption = QString::fromUtf8(caption),
            .control = QString::fromLatin1(control),
            .characters = characters,
            .pattern = pattern,
            .readOnly = true,
            .beside = true};
}

QList<BoxGroup> groups(const CompanyRules& rules) {
    const auto& a = strarticle;
    const QString price = articles::pricePattern(rules);
    return {{QStringLiteral("Identification"),
             {{&a.art_ref, QStringLiteral("Référence :"), QStringLiteral("txtref")},
              {&a.art_rfou, QStringLiteral("Réf. fournisseur :"), QStringLiteral("txtrfou")},
              {&a.art_li1, QStringLiteral("Libellé :"), QStringLiteral("txtli1"), 32},
              {&a.art_li2, QStringLiteral("Libellé 2 :"), QStringLiteral("txtli2"), 32},
              {&a.art_lib3, QStringLiteral("Libellé 3 :"), QStringLiteral("txtlib3"), 32}}},
            {QStringLiteral("Nature"),
             {{&a.art_typ, QStringLiteral("Type F/N/G :"), QStringLiteral("Txttyp")},
              {&a.art_hom, QStringLiteral("Homologation O/N :"), QStringLiteral("Txthom")},
              {.field = &a.art_ste,
               .caption = QStringLiteral("Stérilisation O/N :"),
               .control = QStringLiteral("Txtste"),
               .beside = true},
              {&a.art_nho, QStringLiteral("N° HOMOLOGATION :"), QStringLiteral("txtnho")},
              {&a.art_ori, QStringLiteral("Origine H/A/N :"), QStringLiteral("Txtori")}}},
            {QStringLiteral("Remboursement"),
             {{&a.art_tip, QStringLiteral("Code TIPS :"), QStringLiteral("txttip"), 10},
              {&a.art_lpp, QStringLiteral("Code LPP :"), QStringLiteral("txtlpp"), 10}}},
            {QStringLiteral("Classement"),
             {{&a.art_fou, QStringLiteral("Fournisseur :"), QStringLiteral("txtfou")},
              {&a.art_fam, QStringLiteral("Famille :"), QStringLiteral("txtfam")},
              {&a.art_sfam, QStringLiteral("Sous-famille :"), QStringLiteral("txtsfam")}}},
            {QStringLiteral("Prix et remises"),
             {{&a.art_tva, QStringLiteral("Code TVA :"), QStringLiteral("txttva")},
              {&a.art_tar, QStringLiteral("Prix H(T) / T(TC) :"), QStringLiteral("txttar")},
              {&a.art_pv1, QStringLiteral("Prix de vente HT :"), QStringLiteral("txtpv1"), 10, price},
              {&a.art_ttc, QStringLiteral("Prix de vente TTC :"), QStringLiteral("txtttc"), 10, price},
              {&a.art_res, QStringLiteral("Tarif responsabilité :"), QStringLiteral("txtres")},
              {&a.art_rem, QStringLiteral("Catégorie remise :"), QStringLiteral("txtrem")},
              {&a.art_crp, QStringLiteral("Catégorie commission :"), QStringLiteral("txtcrp")}}},
            {QStringLiteral("Stock et achats"),
             {{&a.art_gpie, QStringLiteral("Pièces gérées O/N :"), QStringLiteral("txtgpie")},
              {&a.art_min, QStringLiteral("Stock minimum :"), QStringLiteral("txtmin"), 8},
              besideIt(a.art_stk, "Stock :", "txtstk", 8),
              {&a.art_cdec, QStringLiteral("En commande client :"), QStringLiteral("txtcdec"), 8, {}, false, true},
              besideIt(a.art_cdef, "fournisseur :", "txtcdef", 8),
              {&a.art_pam, QStringLiteral("Prix moyen d'achat :"), QStringLiteral("txtpam"), 8, price, false, true},
              besideIt(a.art_dpa, "dernier prix :", "txtdpa", 8, price),
              {&a.art_ean, QStringLiteral("Code EAN :"), QStringLiteral("txtart_ean")}}},
            {QStringLiteral("Comptes"),
             {{&a.art_cpt, QStringLiteral("Compte vente :"), QStringLiteral("Txtcpt")},
              {&a.art_cpte, QStringLiteral("Compte vente export :"), QStringLiteral("Txtcpte")},
              {&a.art_cpta, QStringLiteral("Compte achat :"), QStringLiteral("Txtcpta")},
              {&a.art_cpts, QStringLiteral("Compte stock :"), QStringLiteral("Txtcpts")}}},
            {QStringLiteral("Mémo :"), {{&a.art_memo, {}, QStringLiteral("txtmemo"), 20}}}};
}

/// The reimbursement category that an article works with: LPP unless it says TIPS.
QString categoryOf(const Record& article) {
    return article[strarticle.art_cat] == u"T" ? QStringLiteral("T") : QStringLiteral("L");
}

} // namespace

ArticleForm::ArticleForm(Desk& desk)
    : RecordForm(desk, QStringLiteral("T_artges")),
      molven_(workspace_.open(session().molven())),
      compta_(workspace_.open(session().path(DataFile::Compta))),
      gencode_(workspace_.open(session().path(DataFile::Gencode))),
      movementFiles_(openMovementFiles(workspace_, session())) {
    buildFollowUp();
    severalLpp_ = new RecordPanel({{&strartlpp.lpp_1, QStringLiteral("Plusieurs LPP, 1 :")},
                                   {&strartlpp.lpp_2, QStringLiteral("2 :")},
                                   {&strartlpp.lpp_3, QStringLiteral("3 :")}},
                                  3, this);
    for (const FieldBox& box : severalLpp_->boxes()) bind(box.field->name, severalLpp_->edit(*box.field));
    const PickList articles = pick_lists::articles(molven_, {});
    build({QStringLiteral("Gestion des articles"),
           articles.columns,
           articles.query,
           groups(session().rules()),
           2,
           strarticle.art_ref,
           QStringLiteral("Référence Inconnue"),
           QStringLiteral("Aucun article sélectionné"),
           {{DataFile::Molven, molven_}, {DataFile::Compta, compta_}},
           {&strarticle.art_li1, &strarticle.art_typ, &strarticle.art_hom, &strarticle.art_ste, &strarticle.art_fou,
            &strarticle.art_fam}});
    auto* row = new QHBoxLayout;
    const std::pair<QString, QWidget*> entries[] = {{session().rules().hasAncillarySets()
                                                         ? QStringLiteral("(A)rticle(T)exte (X)ancillaire :")
                                                         : QStringLiteral("(A)rticle (T)exte :"),
                                                     kind_},
                                                    {QStringLiteral("Tenu en stock O/N :"), stocked_},
                                                    {QStringLiteral("Suivi O/N :"), followed_},
                                                    {QStringLiteral("Remboursement T(IPS) L(PP) :"), reimbursement_}};
    for (const auto& [caption, entry] : entries) {
        row->addWidget(new QLabel(caption, this));
        row->addWidget(entry);
    }
    row->addStretch();
    auto* words = new QHBoxLayout;
    words->addWidget(followUp_);
    words->addSpacing(style::WideGap);
    words->addWidget(priceNotice(session(), this));
    words->addStretch();
    extraRows()->addLayout(row);
    extraRows()->addWidget(severalLpp_);
    extraRows()->addLayout(words);
    orderTabs();
    extraButtons()->addWidget(
        button(QStringLiteral("Cmdvismvt"), QStringLiteral("M&ouvements"), [this] { showMovements(); }));
    extraButtons()->addWidget(
        button(QStringLiteral("Cmdvisstk"), QStringLiteral("Produits en s&tock"), [this] { showUnitsInStock(); }));
    extraButtons()->addWidget(trailButton(*this, [this] {
        return TrailSubject{TrailSubject::Kind::Article, requireRecord()[strarticle.art_ref]};
    }));
    setPickers();
}

void ArticleForm::buildFollowUp() {
    followUp_ = new QLabel(this);
    followUp_->setObjectName(QStringLiteral("Lblsuivi"));
    const auto entry = [this](const QString& name) {
        auto* edit = new Edit(this);
        edit->setObjectName(name);
        edit->setMaxLength(1);
        edit->setFixedWidth(style::boxWidth(1));
        connect(edit, &QLineEdit::textEdited, edit, [edit](const QString& typed) { edit->setText(typed.toUpper()); });
        onLeft(edit, [this, edit] {
            adaptToKind();
            articles::checkValue(session().rules(), edit->objectName(), edit->text());
        });
        return edit;
    };
    kind_ = entry(QStringLiteral("Txtop1"));
    stocked_ = entry(QStringLiteral("Txtop2"));
    followed_ = entry(QStringLiteral("Txtop3"));
    reimbursement_ = new QComboBox(this);
    reimbursement_->setObjectName(QStringLiteral("Option1"));
    reimbursement_->addItems({QStringLiteral("T"), QStringLiteral("L")});
    bind(strarticle.art_cat.name, reimbursement_);
}

/// The entries of the article's kind come after its labels, the boxes of several LPP codes after the LPP code.
void ArticleForm::orderTabs() {
    const QList<QWidget*> kind{panel().edit(strarticle.art_lib3), kind_, stocked_, followed_, reimbursement_};
    const QList<QWidget*> codes{panel().edit(strarticle.art_lpp), severalLpp_->edit(strartlpp.lpp_1),
                                severalLpp_->edit(strartlpp.lpp_2), severalLpp_->edit(strartlpp.lpp_3)};
    tabThrough(kind);
    tabThrough(codes);
}

void ArticleForm::setPickers() {
    keyPicker([this](const pick_lists::Chosen& chosen) { return pick_lists::articles(molven_, chosen); });
    picker(strarticle.art_sfam, [this] {
        const QString family = typedCode(strarticle.art_fam);
        if (molven_.count(strparam, parameters::ofList(list::SubFamily) && strparam.cpt_par == family) == 0)
            throw Refusal(QStringLiteral("Aucune s/famille pour cette famille"), strarticle.art_sfam.name);
        return pick_lists::subFamilies(molven_, family, put(strarticle.art_sfam, strparam.num_par));
    });
    for (const articles::Account& account : articles::accounts()) {
        picker(account.field, [this, &account] {
            return pick_lists::accounts(compta_, account.start, put(account.field, strplan.cpt_aff));
        });
    }
    for (const Label* field : {&strarticle.art_li1, &strarticle.art_li2, &strarticle.art_lib3})
        onLeft(panel().edit(*field),
               [this, field] { articles::checkValue(session().rules(), field->name, typedCode(*field)); });
    codeBoxes().valueOf = [this](const Text&) { return kind_->text(); };
    codeBoxes().refuseOnLeaving({&strarticle.art_typ, &strarticle.art_hom, &strarticle.art_ste, &strarticle.art_ori,
                                 &strarticle.art_cpt, &strarticle.art_cpte, &strarticle.art_cpta,
                                 &strarticle.art_cpts});
}

Record ArticleForm::blank() { return articles::blank(); }

std::optional<Record> ArticleForm::find(const QString& key) { return articles::find(molven_, key); }

void ArticleForm::write(const Record& record, const std::optional<Record>& before) {
    articles::Entry entry;
    entry.article = record;
    entry.kind = kind_->text().trimmed();
    entry.stocked = stocked_->text().trimmed();
    entry.followed = followed_->text().trimmed();
    if (reimbursement_->currentText() != categoryOf(record))
        entry.article[strarticle.art_cat] = reimbursement_->currentText();
    entry.severalLpp = Record(strartlpp);
    severalLpp_->store(*entry.severalLpp);
    const QString notice = references::saveArticle(session(), entry, before);
    if (!notice.isEmpty()) prompt().tell(notice);
}

void ArticleForm::erase(const Record& record) {
    references::remove(session(), record, [&record](references::Files& files) {
        articles::remove(files[DataFile::Molven], files[DataFile::Gencode], record[strarticle.art_ref]);
    });
}

QString ArticleForm::nameOf(const Record& record) const {
    return QStringLiteral("Article %1, %2").arg(record[strarticle.art_ref], record[strarticle.art_li1]);
}

void ArticleForm::stateChanged() {
    for (Edit* edit : {kind_, stocked_, followed_}) edit->setEditable(state() != State::Viewing);
    reimbursement_->setEnabled(state() != State::Viewing);
    if (state() == State::Changing) return;
    loaded_ = record() && state() == State::Viewing && !record()->value(strarticle.art_ref).isEmpty()
                  ? articles::entryOf(*record())
                  : articles::Entry();
    loaded_.severalLpp = articles::severalLpp(molven_, typedCode(strarticle.art_ref));
    kind_->put(loaded_.kind);
    stocked_->put(loaded_.stocked);
    followed_->put(loaded_.followed);
    reimbursement_->setCurrentText(categoryOf(loaded_.article));
    severalLpp_->load(*loaded_.severalLpp);
}

bool ArticleForm::hasFurtherChanges() const {
    return kind_->text().trimmed() != loaded_.kind || stocked_->text().trimmed() != loaded_.stocked ||
           followed_->text().trimmed() != loaded_.followed ||
           reimbursement_->currentText() != categoryOf(loaded_.article) ||
           severalLpp_->differsFrom(*loaded_.severalLpp);
}

void ArticleForm::shown() {
    const auto code = [this](const Text& field) { return typedCode(field); };
    const auto hint = [&](const Text& field, const QString& text) {
        panel().setHint(field, code(field).isEmpty() ? QString() : text);
    };
    if (code(strarticle.art_lpp) == SeveralLpp) hint(strarticle.art_lpp, QStringLiteral("Plusieurs LPP"));
    if (const auto vat = molven_.find(strparfac, strparfac.par1_cde == code(strarticle.art_tva)))
        hint(strarticle.art_tva, format((*vat)[strparfac.par1_tx], QStringLiteral("#0.00")) + QStringLiteral(" %"));
    hint(strarticle.art_ori, articles::originText(code(strarticle.art_ori)));
    severalLpp_->setVisible(code(strarticle.art_lpp) == SeveralLpp);
    severalLpp_->setEditable(state() != State::Viewing);
    adaptToKind();
}

void ArticleForm::adaptToKind() {
    const bool isText = kind_->text() == u"T";
    if (isText && state() != State::Viewing) {
        stocked_->put(QStringLiteral("N"));
        followed_->put(QStringLiteral("N"));
    }
    for (const Text* field : {&strarticle.art_typ, &strarticle.art_hom, &strarticle.art_ste})
        panel().edit(*field)->setVisible(!isText);
    const bool byMovements = stocked_->text() == u"O" && followed_->text() == u"N";
    panel().setCaption(strarticle.art_nho,
                       byMovements ? QStringLiteral("CODE CE :") : QStringLiteral("N° HOMOLOGATION :"));
    const QString followUp = isText || stocked_->text().isEmpty() ? QString()
                             : stocked_->text() != u"O"           ? follow_up::None
                             : followed_->text() == u"O"          ? follow_up::ByUnit
                                                                  : follow_up::ByMovements;
    followUp_->setText(followUp.isEmpty() ? QString() : articles::followUpText(followUp));
}

void ArticleForm::showUnitsInStock() {
    const Record& article = requireRecord();
    if (article[strarticle.art_aig] != follow_up::ByUnit)
        throw Refusal(QStringLiteral("Cette référence n'est pas suivie"), strarticle.art_ref.name);
    const QString reference = article[strarticle.art_ref];
    const qint64 count = units::countInStock(molven_, reference);
    if (count == 0)
        throw Refusal(QStringLiteral("aucun produit en stock pour cette référence"), strarticle.art_ref.name);
    pick(pick_lists::units(molven_, QStringLiteral("Nbre sélection : %1").arg(count),
                           strproduit.ref_art == reference && strproduit.tes_vte != state::Sold, [](const Record&) {}));
}

void ArticleForm::showMovements() {
    const Record& article = requireRecord();
    if (article[strarticle.art_aig] == follow_up::ByUnit)
        throw Refusal(QStringLiteral("Ce choix est réservé aux références non suivies"), strarticle.art_ref.name);
    const QString reference = article[strarticle.art_ref];
    if (movements::of(movementFiles_, reference).isEmpty())
        throw Refusal(QStringLiteral("aucun mouvement sur cette référence"), strarticle.art_ref.name);
    if (auto* movements = dynamic_cast<MovementForm*>(desk().open(QStringLiteral("T_nsvges"))))
        movements->showArticle(reference);
}

} // namespace molven
