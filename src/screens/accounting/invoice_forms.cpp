#include "screens/accounting/invoice_forms.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "reference/code_kinds.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/seller.h"
#include "sales/document_kind.h"
#include "sales/documents.h"
#include "screens/accounting/figures.h"
#include "screens/sales/document_form.h"
#include "ui/edit.h"
#include "ui/printed_list.h"

#include <QMap>

namespace molven {

namespace {

const QString GroupBox = QStringLiteral("Cmbtri"), Apart = QStringLiteral("   ");

bool isCredit(const Record& header) { return documents::isOfKind(documentKind(QStringLiteral("AVO")), header); }

QString kindOf(const Record& header) { return isCredit(header) ? QStringLiteral("Avoir") : QStringLiteral("Facture"); }

bool isOverdue(const Record& header) {
    return !isCredit(header) && invoice_listing::dueKey(header) < sortKey(Clock::today());
}

CellMark dueMark(const Record& header) {
    if (!isOverdue(header)) return {};
    const QDate due = QDate::fromString(invoice_listing::dueKey(header), QStringLiteral("yyyyMMdd"));
    return {dateText(due), style::Tone::Alarm,
            QStringLiteral("Échue depuis ") + counted(due.daysTo(Clock::today()), QStringLiteral("jour"))};
}

/// What the invoices come to.
struct Sums {
    Decimal ht, vat, ttc, due;
    void add(const Record& header) {
        ht += header[strface.fac_ht];
        vat += invoice_listing::vatOf(header);
        ttc += header[strface.fac_ttc];
        due += header[strface.fac_ffa];
    }
};

/// By currency: amounts of two are never added up.
class SumsByCurrency {
public:
    explicit SumsByCurrency(const Session& session) : own_(session.spe_mon.trimmed()) {}
    void add(const Record& header) { sums_[currencyOf(header)].add(header); }
    /// The company's for a document that names none.
    QString currencyOf(const Record& header) const {
        const QString currency = header[strface.fac_mon].trimmed();
        return currency.isEmpty() ? own_ : currency;
    }
    bool isOwn(const QString& currency) const { return currency == own_; }
    /// What each comes to; the currency is told behind when it is another than the company's.
    template <class Words>
    QStringList lines(const Words& words) const {
        QStringList all;
        for (auto one = sums_.begin(); one != sums_.end(); ++one)
            all.append(words(*one) + (isOwn(one.key()) ? QString() : u' ' + one.key()));
        return all.isEmpty() ? QStringList(words(Sums())) : all;
    }

private:
    QString own_;
    QMap<QString, Sums> sums_;
};

QList<GridColumn> invoiceColumns() {
    const DocumentHeaders& h = strface;
    return {{&h.fac_no, QStringLiteral("N°"), 65},
            {&h.fac_datf, QStringLiteral("Date"), 85},
            {&h.fac_mode,
             QStringLiteral("Genre"),
             60,
             {},
             [](const Record& header) {
                 return CellMark{kindOf(header), style::Tone::Quiet, {}};
             }},
            {&h.fac_clt, QStringLiteral("Client"), 65},
            {&h.fac_nom, QStringLiteral("Nom"), 210},
            {&h.fac_refc, QStringLiteral("Référence"), 110},
            {&h.fac_pat, QStringLiteral("Patient"), 140},
            {&h.fac_ech, QStringLiteral("Échéance"), 90, {}, dueMark},
            {&h.fac_ht, QStringLiteral("H.T."), 95, Amount},
            {&h.fac_ttc, QStringLiteral("T.T.C."), 95, Amount},
            {&h.fac_ffa, QStringLiteral("À régler"), 95, Amount}};
}

} // namespace

InvoiceListForm::InvoiceListForm(Desk& desk, const QString& name)
    : SelectionForm(desk, name), files_(invoice_listing::openFiles(workspace_, session())) {}

void InvoiceListForm::buildList(const QString& title, const QList<CriterionBox>& further,
                                const QList<GridColumn>& columns) {
    using Kind = CriterionBox::Kind;
    CriterionBox client{.name = QStringLiteral("txtcltdeb"),
                        .caption = QStringLiteral("Clients du :"),
                        .characters = 6,
                        .code = &codes::Client,
                        .isBound = true,
                        .digits = 6};
    CriterionBox last = client;
    last.name = QStringLiteral("txtcltfin");
    last.caption = QStringLiteral("au :");
    QList<CriterionBox> boxes{
        {From, further.isEmpty() ? QStringLiteral("Factures du :") : QStringLiteral("Échéances du :"), 10, Kind::Day},
        {To, QStringLiteral("au :"), 10, Kind::Day},
        client,
        last,
        {.name = QStringLiteral("txtfam"),
         .caption = QStringLiteral("Famille client :"),
         .characters = 3,
         .code = &codes::ClientFamily}};
    build({.title = title,
           .criteria = boxes + further,
           .across = 5,
           .list = columns,
           .searches = {{QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { list(); }}},
           .deeds = {{QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }}},
           .files = {{DataFile::Molven, files_.molven}},
           .count = QStringLiteral("Label1"),
           .size = {1200, 680}});
    SelectionForm::list().chosen = [this](const Record& header) { guarded([&] { openDocument(header); }); };
}

invoice_listing::Clients InvoiceListForm::typedClients() const {
    const auto value = [this](const char* name) { return criteria().value(QString::fromLatin1(name)); };
    return {value("txtcltdeb"), value("txtcltfin"), value("txtfam")};
}

void InvoiceListForm::list() {
    clearSelection();
    invoices_.clear();
    period_ = typedPeriod(criteria().value(From), criteria().value(To));
    invoices_ = found();
    SumsByCurrency sums(session());
    for (const Record& header : invoices_) sums.add(header);
    const QStringList totals = sums.lines([](const Sums& one) { return format(one.ttc, Amount); });
    showRows(invoices_,
             QStringLiteral("%1, total T.T.C. : %2")
                 .arg(counted(invoices_.size(), QStringLiteral("document")), totals.join(QStringLiteral(", "))));
}

void InvoiceListForm::openDocument(const Record& header) {
    if (files_.vente.count(strface,
                           strface.fac_no == header[strface.fac_no] && strface.fac_aa == header[strface.fac_aa]) == 0)
        throw Refusal(QStringLiteral("Ce document n'est pas parmi vos documents en cours : (archives)"));
    const QString mode = isCredit(header) ? QStringLiteral("AVO") : QStringLiteral("FAC");
    if (auto* form = dynamic_cast<DocumentForm*>(desk().open(QStringLiteral("T_gestion"), mode)))
        form->bringUp(header[strface.fac_no]);
}

StatementForm::StatementForm(Desk& desk) : InvoiceListForm(desk, QStringLiteral("T_reledt")) {
    buildList(QStringLiteral("Relevés de facture"), {}, invoiceColumns());
}

QList<Record> StatementForm::found() { return invoice_listing::ofPeriod(files_, period_, typedClients()); }

namespace {

/// Where the client's invoices go: the invoicing address when there is one.
QStringList addressOf(const Record& client) {
    const auto linesOf = [&client](std::initializer_list<const Label*> fields) {
        QStringList lines;
        for (const Label* field : fields)
            if (const QString line = client.value(*field).trimmed(); !line.isEmpty()) lines.append(line);
        return lines;
    };
    const auto& c = strclient;
    const QStringList invoicing = linesOf({&c.clt_fac1, &c.clt_fac2, &c.clt_fac3, &c.clt_fac4, &c.clt_fac5});
    const QStringList postal = linesOf({&c.clt_l1, &c.clt_l2, &c.clt_l3, &c.clt_l4, &c.clt_l5});
    return QStringList{client.value(c.clt_nom)} + (invoicing.isEmpty() ? postal : invoicing);
}

} // namespace

Letter StatementForm::letterTo(const QString& client, const QList<Record>& invoices) {
    const DocumentHeaders& h = strface;
    const Record identity = seller::read(files_.molven);
    Record addressee = parties::findClient(files_.molven, client).value_or(Record(strclient));
    if (addressee.value(strclient.clt_nom).isEmpty()) addressee[strclient.clt_nom] = invoices.first()[h.fac_nom];
    Letter letter;
    letter.sender = session().spe_nom;
    letter.senderAddress = seller::addressLines(identity);
    letter.footer = session().spe_pied;
    letter.address = addressOf(addressee);
    letter.placeAndDate = QStringLiteral("Le ") + dateText(Clock::today());
    letter.subject = QStringLiteral("RELEVE DE FACTURES") + period_.words();
    letter.paragraphs = {QStringLiteral("Client : ") + client};
    const SumsByCurrency currencies(session());
    if (const QString currency = currencies.currencyOf(invoices.first()); !currencies.isOwn(currency))
        letter.paragraphs.append(QStringLiteral("Montants en ") + currency);
    letter.columns = {{QStringLiteral("Date")},         {QStringLiteral("Pièce")},       {QStringLiteral("Référence")},
                      {QStringLiteral("Patient")},      {QStringLiteral("Echéance")},    {QStringLiteral("H.T."), true},
                      {QStringLiteral("T.V.A."), true}, {QStringLiteral("T.T.C."), true}};
    Sums sums;
    for (const Record& header : invoices) {
        sums.add(header);
        letter.rows.append({header[h.fac_datf], kindOf(header) + u' ' + header[h.fac_no], header[h.fac_refc],
                            header[h.fac_pat], header[h.fac_ech], format(header[h.fac_ht], Amount),
                            format(invoice_listing::vatOf(header), Amount), format(header[h.fac_ttc], Amount)});
    }
    letter.totals = {QStringLiteral("Total H.T. : ") + format(sums.ht, Amount),
                     QStringLiteral("Total T.V.A. : ") + format(sums.vat, Amount),
                     QStringLiteral("Total T.T.C. : ") + format(sums.ttc, Amount)};
    if (sums.due != sums.ttc)
        letter.totals.append(QStringLiteral("Acomptes déduits, à régler : ") + format(sums.due, Amount));
    return letter;
}

void StatementForm::print() {
    list();
    const SumsByCurrency currencies(session());
    QMap<std::pair<QString, QString>, QList<Record>> statements;
    for (const Record& header : invoices_)
        statements[{header[strface.fac_clt], currencies.currencyOf(header)}].append(header);
    QList<Letter> letters;
    for (auto one = statements.begin(); one != statements.end(); ++one)
        letters.append(letterTo(one.key().first, one.value()));
    desk().print(printed(letters, QStringLiteral("RELEVE DE FACTURES")));
}

DueDateForm::DueDateForm(Desk& desk) : InvoiceListForm(desk, QStringLiteral("T_echedt")) {
    buildList(
        QStringLiteral("Edition factures/date echeance"),
        {{.name = GroupBox,
          .caption = QStringLiteral("Regroupées par :"),
          .options = {QStringLiteral("Échéance"), QStringLiteral("Client"), QStringLiteral("Mode de règlement")}}},
        invoiceColumns());
}

invoice_listing::Grouping DueDateForm::grouping() const {
    return static_cast<invoice_listing::Grouping>(criteria().choice(GroupBox));
}

QList<Record> DueDateForm::found() { return invoice_listing::due(files_, period_, typedClients(), grouping()); }

QString DueDateForm::groupOf(const Record& header) {
    const DocumentHeaders& h = strface;
    switch (grouping()) {
    case invoice_listing::Grouping::Client:
        return QStringLiteral("Client : %1 %2").arg(header[h.fac_clt], header[h.fac_nom]);
    case invoice_listing::Grouping::PaymentMode: {
        const QString code = header[h.fac_rglt];
        const auto mode = parameters::paymentMode(files_.molven, code);
        return code.isEmpty() ? QStringLiteral("Sans mode de règlement")
                              : QStringLiteral("Mode de règlement : %1 %2")
                                    .arg(code, mode ? mode->value(strparrgt.lib_rglt) : QStringLiteral("inconnu"));
    }
    case invoice_listing::Grouping::DueDate:
        break;
    }
    return QStringLiteral("Échéance : ") + dayOfKey(invoice_listing::dueKey(header));
}

void DueDateForm::print() {
    list();
    const DocumentHeaders& h = strface;
    Report report(QStringLiteral("FACTURES PAR DATE D'ECHEANCE"), {{QStringLiteral("Echéance")},
                                                                   {QStringLiteral("Pièce")},
                                                                   {QStringLiteral("Date")},
                                                                   {QStringLiteral("Client")},
                                                                   {QStringLiteral("Nom")},
                                                                   {QStringLiteral("Règlement")},
                                                                   {QStringLiteral("T.T.C."), true},
                                                                   {QStringLiteral("A régler"), true},
                                                                   {QStringLiteral("Echue")}});
    report.say(QStringLiteral("Échéances%1   groupées par %2, échues au %3")
                   .arg(period_.words(),
                        QStringList{QStringLiteral("échéance"), QStringLiteral("client"),
                                    QStringLiteral("mode de règlement")}[criteria().choice(GroupBox)],
                        dateText(Clock::today())));
    report.say(typedClients().words());
    const SumsByCurrency none(session());
    SumsByCurrency all = none, ofGroup = none, overdue = none;
    const auto ttcAndDue = [](const Sums& one) {
        return QStringLiteral("T.T.C. %1   à régler %2").arg(format(one.ttc, Amount), format(one.due, Amount));
    };
    for (qsizetype i = 0; i < invoices_.size(); ++i) {
        const Record& header = invoices_[i];
        const QString group = invoice_listing::groupKey(header, grouping());
        const auto isApart = [&](qsizetype other) {
            return other < 0 || other == invoices_.size() ||
                   invoice_listing::groupKey(invoices_[other], grouping()) != group;
        };
        if (isApart(i - 1)) report.group(groupOf(header));
        for (SumsByCurrency* sums : {&all, &ofGroup}) sums->add(header);
        if (isOverdue(header)) overdue.add(header);
        report.row({dayOfKey(invoice_listing::dueKey(header)), kindOf(header) + u' ' + header[h.fac_no],
                    header[h.fac_datf], header[h.fac_clt], header[h.fac_nom], header[h.fac_rglt],
                    format(header[h.fac_ttc], Amount), format(header[h.fac_ffa], Amount),
                    isOverdue(header) ? QStringLiteral("échue") : QString()});
        if (!isApart(i + 1)) continue;
        report.total(QStringLiteral("Total : ") + ofGroup.lines(ttcAndDue).join(Apart));
        ofGroup = none;
    }
    const QStringList late = overdue.lines([](const Sums& one) { return format(one.due, Amount); });
    report.total(
        QStringLiteral("TOTAUX : %1   dont échues %2").arg(all.lines(ttcAndDue).join(Apart), late.join(Apart)));
    report.count();
    desk().print(report);
}

} // namespace molven
