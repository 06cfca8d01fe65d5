#include "screens/screens.h"

#include "screens/accounting/commission_form.h"
#include "screens/accounting/invoice_forms.h"
#include "screens/accounting/statistics_form.h"
#include "screens/accounting/transfer_form.h"
#include "screens/reference/article_form.h"
#include "screens/reference/client_form.h"
#include "screens/reference/code_table_forms.h"
#include "screens/reference/ean_pool_form.h"
#include "screens/reference/listing_forms.h"
#include "screens/reference/seller_form.h"
#include "screens/reference/supplier_form.h"
#include "screens/sales/archive_form.h"
#include "screens/sales/document_form.h"
#include "screens/sales/exchange_form.h"
#include "screens/sales/integration_form.h"
#include "screens/sales/print_form.h"
#include "screens/sales/recall_form.h"
#include "screens/sales/replenishment_form.h"
#include "screens/shell/guide_form.h"
#include "screens/shell/login_form.h"
#include "screens/shell/menu_form.h"
#include "screens/shell/secret_forms.h"
#include "screens/shell/trail_form.h"
#include "screens/stock/delivery_form.h"
#include "screens/stock/depot_count_form.h"
#include "screens/stock/endowment_form.h"
#include "screens/stock/inventory_count_form.h"
#include "screens/stock/label_forms.h"
#include "screens/stock/listing_forms.h"
#include "screens/stock/maintenance_form.h"
#include "screens/stock/movement_form.h"
#include "screens/stock/movement_listing_form.h"
#include "screens/stock/patient_form.h"
#include "screens/stock/receipt_form.h"
#include "screens/stock/received_invoice_form.h"
#include "screens/stock/sets/set_form.h"
#include "screens/stock/stock_rebuild_form.h"
#include "screens/stock/unit_history_form.h"
#include "ui/desk.h"

namespace molven {

namespace {

template <class Screen>
void add(Desk& desk, const char* name, const QStringList& modes = {}) {
    desk.addScreen(
        QString::fromLatin1(name), [](Desk& owner) -> Form* { return new Screen(owner); }, modes);
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
    add<ArticleListing>(desk, "T_artedt");
    add<EanPoolForm>(desk, "T_gencode");
    add<ClientListing>(desk, "t_cltedt");
    add<SupplierForm>(desk, "T_fouges");
    add<SupplierListing>(desk, "T_fouedt");
    add<ParameterForm>(desk, "T_param");
    add<PaymentModeForm>(desk, "T_parrgt");
    add<InvoicingForm>(desk, "T_parfac");
    add<InvoiceTextForm>(desk, "T_partxt");
    add<CurrencyForm>(desk, "T_monnaie");
    add<SellerForm>(desk, "T_emetteur");
    add<AccountForm>(desk, "T_plan");
    add<LppForm>(desk, "T_parlpp");
    add<LppCodificationForm>(desk, "T_tipslpp");
    add<TipsForm>(desk, "T_partips");
    add<TariffForm>(desk, "T_partarif");
    add<DiscountForm>(desk, "T_parrem");
    add<CommissionRateForm>(desk, "T_partxrep");
    desk.addScreen(QStringLiteral("T_utilit"),
                   [](Desk& owner) -> Form* {
                       if (owner.session.mode_ecran == u"ANG") return new EnglishLabelForm(owner);
                       return new MaintenanceForm(owner);
                   },
                   {QStringLiteral("ANG"), QStringLiteral("PRO"), QStringLiteral("STK"), QStringLiteral("FAM")});
    add<ReceiptForm>(desk, "T_proges");
    add<DeliveryForm>(desk, "T_lecliv");
    add<ReceivedInvoiceForm>(desk, "T_facturx");
    add<LabelSelectionForm>(desk, "T_etiedt");
    add<LabelPrintForm>(desk, "T_etibarre");
    add<UnitHistoryForm>(desk, "T_traimm");
    add<VirtualUnitHistoryForm>(desk, "T_traimmv");
    add<UnitListForm>(desk, "T_proedt");
    add<StockListForm>(desk, "T_stkedt");
    add<PatientForm>(desk, "T_tracab");
    add<VirtualPatientForm>(desk, "T_tracabv");
    add<SetForm>(desk, "AN_base");
    add<SetStateForm>(desk, "AN_etat");
    add<RecallForm>(desk, "T_rappel");
    add<DocumentForm>(desk, "T_gestion");
    add<DocumentForm>(desk, "T_btrges");
    desk.addScreen(QStringLiteral("T_gespro"),
                   [](Desk& owner) -> Form* { return new DocumentForm(owner, proformaKind(owner.session.rules())); });
    desk.addScreen(QStringLiteral("T_ostrane"), [](Desk& owner) -> Form* {
        return new DocumentForm(owner, documentKind(owner.session.mode_ecran, DataFile::Ostrane));
    });
    for (const PrintScreen& screen : printScreens())
        desk.addScreen(screen.name, [&screen](Desk& owner) -> Form* { return new PrintForm(owner, screen); });
    add<DepotCountForm>(desk, "T_invdep");
    add<EndowmentForm>(desk, "T_dotation");
    add<ReplenishmentForm>(desk, "T_reassort");
    add<MovementForm>(desk, "T_nsvges");
    add<MovementListingForm>(desk, "T_nsvedt");
    add<StockRecountForm>(desk, "T_procal");
    add<StockRebuildForm>(desk, "T_procalns");
    add<InventoryCountForm>(desk, "T_comptage");
    add<TrailForm>(desk, "T_histo");
    add<GuideForm>(desk, "T_guide");
    add<AboutForm>(desk, "T_apropos");
    add<CommissionForm>(desk, "T_comrep");
    add<StatisticsForm>(desk, "T_staedt");
    add<TransferForm>(desk, "T_trsfac");
    add<StatementForm>(desk, "T_reledt");
    add<DueDateForm>(desk, "T_echedt");
    add<DocumentArchiveForm>(desk, "T_arcdoc");
    add<TransferArchiveForm>(desk, "T_arcbtr");
    add<UnitArchiveForm>(desk, "T_arcpro");
    add<DocumentReturnForm>(desk, "T_reafac");
    add<TransferReturnForm>(desk, "T_reabtr");
    add<UnitReturnForm>(desk, "T_reapro");
    add<DeliveryDiskForm>(desk, "T_livdk");
    add<DeliveryExtractionForm>(desk, "T_extract");
    add<IntegrationForm>(desk, "T_dkliv");
}

void startProgram(Desk& desk) {
    addScreens(desk);
    desk.open(QStringLiteral("Tcsecret"));
}

} // namespace molven
