#include "screens/stock/endowment_form.h"

#include "stock/depot_tables.h"
#include "stock/endowments.h"

namespace molven {

EndowmentForm::EndowmentForm(Desk& desk) : MolvenTableForm(desk, QStringLiteral("T_dotation")) {
    const auto& t = strdotation;
    const QString quantity = QStringLiteral("####0");
    build({QStringLiteral("Dotations des dépôts"),
           QStringLiteral("LISTE DES DOTATIONS"),
           endowments::table(),
           molven_,
           {{&t.dot_dep, QStringLiteral("Dépôt"), 70},
            {&t.dot_ref, QStringLiteral("Référence"), 130},
            {&t.dot_lib, QStringLiteral("Désignation"), 380},
            {&t.dot_qte, QStringLiteral("Quantité"), 90, quantity}},
           {{&t.dot_dep, QStringLiteral("&Dépôt :"), {}, 6, {}, false, false, QStringLiteral("Cmddep")},
            {&t.dot_ref, QStringLiteral("&Référence :"), {}, 0, {}, false, false, QStringLiteral("Cmdref")},
            {&t.dot_qte, QStringLiteral("Quanti&té à tenir :"), {}, 6, quantity}},
           {t.dot_dep, t.dot_ref}});
}

} // namespace molven
