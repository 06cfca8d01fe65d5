#include "screens/screens.h"

#include "screens/reference/article_form.h"
#include "screens/reference/client_form.h"
#include "screens/reference/parameter_form.h"
#include "screens/sales/document_form.h"
#include "screens/shell/login_form.h"
#include "screens/shell/menu_form.h"
#include "screens/shell/secret_forms.h"
#include "screens/stock/label_forms.h"
#include "screens/stock/receipt_form.h"
#include "screens/stock/unit_history_form.h"
#include "ui/desk.h"

namespace molven {

namespace {

template <class Screen>
void add(Desk& desk, const char* name) {
    desk.addScreen(QString::fromLatin1(name), [](Desk& owner) -> Form* { return new Screen(owner); });
}

} // namespace

void addScreens(Desk& desk) {
    add<LoginForm>(desk, "Tcsecret");
    add<MenuForm>(desk, "Tmenu");
    add<CurrentPasswordForm>(desk, "tcmodcs1");
    add<NewPasswordForm>(desk, "Tcmodcs2");
    add<CurrentManagerCodeForm>(desk, "Tcodspe1");
    add<NewManagerCodeForm>(desk, "Tcodspe2");
    add<ArticleForm>(desk, "T_artges");
    add<ClientForm>(desk, "t_cltges");
    add<ParameterForm>(desk, "T_param");
    add<ReceiptForm>(desk, "T_proges");
    add<LabelSelectionForm>(desk, "T_etiedt");
    add<LabelPrintForm>(desk, "T_etibarre");
    add<UnitHistoryForm>(desk, "T_traimm");
    add<DocumentForm>(desk, "T_gestion");
}

void startProgram(Desk& desk) {
    addScreens(desk);
    desk.open(QStringLiteral("Tcsecret"));
}

} // namespace molven
