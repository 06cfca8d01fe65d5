#include "screens/shell/opening.h"

#include "screens/sales/document_form.h"
#include "ui/opened_on.h"
#include "ui/selection_form.h"

namespace molven::openings {

namespace {

std::function<void(Form&)> onRecord(const QString& code) {
    return [code](Form& form) {
        if (auto* screen = dynamic_cast<OpenedOn*>(&form)) screen->bringUp(code);
    };
}

std::function<void(Form&)> asking(const QHash<QString, QString>& criteria) {
    return [criteria](Form& form) {
        if (auto* screen = dynamic_cast<SelectionForm*>(&form)) screen->ask(criteria);
    };
}

} // namespace

QString entryOf(Finding::Kind kind) {
    using Kind = Finding::Kind;
    static const QHash<Kind, QString> entries{
        {Kind::Unit, QStringLiteral("mnu_div_imm")},     {Kind::Client, QStringLiteral("mnu1_fic_clt_ges")},
        {Kind::Patient, QStringLiteral("mnu_div_tra")},  {Kind::Article, QStringLiteral("mnu1_fic_art_ges")},
        {Kind::Lot, QStringLiteral("mnu2_stk_pro_edt")}, {Kind::Set, QStringLiteral("mnu1_fic_anc")},
        {Kind::SetType, QStringLiteral("mnu1_fic_anc")}, {Kind::Supplier, QStringLiteral("mnu1_fic_fou_ges")}};
    return entries.value(kind);
}

QString entryOf(const DocumentKind& kind) {
    static const QHash<QString, QString> entries{{QStringLiteral("LIV"), QStringLiteral("mnu_vte_liv_ges")},
                                                 {QStringLiteral("FAC"), QStringLiteral("mnu_vte_fac_ges")},
                                                 {QStringLiteral("AVO"), QStringLiteral("mnu_vte_avo_ges")},
                                                 {QStringLiteral("CSG"), QStringLiteral("mnu_vte_csg_ges")},
                                                 {QStringLiteral("AVG"), QStringLiteral("mnu_vte_avc_ges")},
                                                 {QStringLiteral("BTR"), QStringLiteral("mnu_vte_btr_ges")},
                                                 {QStringLiteral("PROFORMA"), QStringLiteral("mnu_vte_pro_ges")}};
    return entries.value(kind.mode);
}

Opening of(const Finding& finding) {
    using Kind = Finding::Kind;
    Opening made{entryOf(finding.kind), onRecord(finding.code)};
    switch (finding.kind) {
    case Kind::Document:
        made.entry = entryOf(*finding.document);
        made.screen = layoutOf(*finding.document).screen;
        break;
    case Kind::Lot:
        made.fill = asking({{QStringLiteral("txtlot_art"), finding.code}});
        break;
    case Kind::Patient:
        made.fill = asking({{QStringLiteral("txtreg_pat"), finding.code}});
        break;
    case Kind::Set:
        made.screen = QStringLiteral("AN_etat");
        break;
    default:
        break;
    }
    return made;
}

Opening listing(const DocumentKind& kind, const QString& title, const Criterion& criterion) {
    return {entryOf(kind),
            [title, criterion](Form& form) {
                if (auto* screen = dynamic_cast<DocumentForm*>(&form)) screen->offer(title, criterion);
            },
            layoutOf(kind).screen};
}

Opening units(const QHash<QString, QString>& criteria) {
    return {QStringLiteral("mnu2_stk_pro_edt"), asking(criteria)};
}

} // namespace molven::openings
