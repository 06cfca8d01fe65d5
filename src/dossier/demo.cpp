#include "dossier/demo.h"

#include "accounting/client_accounts.h"
#include "data/clock.h"
#include "data/dates.h"
#include "dossier/creation.h"
#include "dossier/demo_reference.h"
#include "reference/articles.h"
#include "reference/identifiers.h"
#include "reference/parameters.h"
#include "reference/party_tables.h"
#include "reference/seller.h"
#include "sales/documents.h"
#include "sales/integration.h"
#include "sales/lines.h"
#include "sales/transfer_notes.h"
#include "sales/unit_rules.h"
#include "stock/ancillary_sets.h"
#include "stock/receipt.h"
#include "stock/set_types.h"
#include "stock/units.h"

#include <algorithm>

namespace molven::demo {

namespace {

/// Puts the clock back when a filling ends, however it ends.
class ClockKeeper {
public:
    ClockKeeper() : setting_(Clock::setting()), today_(Clock::today()) {}
    ~ClockKeeper() { Clock::set(setting_); }
    ClockKeeper(const ClockKeeper&) = delete;
    ClockKeeper& operator=(const ClockKeeper&) = delete;
    QDate today() const { return today_; }

private:
    QDate setting_;
    QDate today_;
};

/// One event of the distributor's life, written on its day.
struct Event {
    enum class Kind { Delivery, NoteInvoiced, Invoice, Credit, Transfer, Consignment, ConsignmentCredit, Set };
    QDate day;
    Kind kind;
    int client; ///< 1 to 40
    QStringList units;
};

/// Writes many documents to one commit: a demonstration need not outlive a crash half-way.
constexpr int DocumentsPerCommit = 500;
constexpr int UnitsPerMonth = 9000;
constexpr int Shares = 4; ///< of the time; receiving takes one, the documents the others

class Life {
public:
    Life(const Session& session, const Options& options, Dice& dice, const QDate& today)
        : session_(session),
          dice_(dice),
          today_(today),
          units_(options.units),
          deliveries_(session, documentKind(QStringLiteral("LIV"))),
          consignments_(session, documentKind(QStringLiteral("CSG"))),
          invoices_(session, documentKind(QStringLiteral("FAC"))),
          credits_(session, documentKind(QStringLiteral("AVO"))),
          consignmentCredits_(session, documentKind(QStringLiteral("AVG"))),
          transfers_(session, documentKind(QStringLiteral("BTR"))),
          ancillaire_(invoices_.workspace.open(session.path(DataFile::Ancillaire))) {}

    void receive(const Progress& progress);
    void plan();
    void write(const Progress& progress);

private:
    struct Received {
        QString immatriculation;
        QDate day;
    };

    Receipt receiptOf(const Record& article, const QDate& day, int quantity);
    QDate later(const QDate& day, int first, int last) { return day.addDays(dice_.between(first, last)); }
    void add(const Event& event) {
        if (event.day <= today_) events_.append(event);
    }
    void planGroup(const QStringList& units, const QDate& lastReceipt);
    SalesBook& bookOf(const Event& event);
    void write(const Event& event);
    void writeSale(SalesBook& book, const Event& event);
    void invoiceNote(const Event& event);
    void transfer(const Event& event);
    void fillSet(const Event& event);

    const Session& session_;
    Dice& dice_;
    const QDate today_;
    const int units_;
    SalesBook deliveries_, consignments_, invoices_, credits_, consignmentCredits_, transfers_;
    Database ancillaire_;
    std::vector<Received> received_;
    QList<Event> events_;
};

Receipt Life::receiptOf(const Record& article, const QDate& day, int quantity) {
    Receipt receipt;
    receipt.reference = article[strarticle.art_ref];
    receipt.supplier = article[strarticle.art_fou];
    receipt.orderNumber = QStringLiteral("CF%1").arg(dice_.between(10000, 99999));
    receipt.orderDate = dateText(day.addDays(-dice_.between(5, 25)));
    receipt.deliveryNumber = QStringLiteral("BL%1").arg(dice_.between(10000, 99999));
    receipt.deliveryDate = dateText(day);
    receipt.quantity = QString::number(quantity);
    receipt.purchasePrice = (article[strarticle.art_pv1] * Decimal(dice_.between(40, 60)) / Decimal(100)).toFixed(2);
    receipt.lot = QStringLiteral("L%1%2").arg(day.toString(QStringLiteral("yyMM"))).arg(dice_.between(100, 999));
    receipt.sterilisationBatch = QStringLiteral("ST%1").arg(dice_.between(1000, 9999));
    receipt.sterilisationDate = day.addMonths(-1).toString(QStringLiteral("MM/yyyy"));
    receipt.expiryDate = day.addMonths(dice_.between(6, 60)).toString(QStringLiteral("MM/yyyy"));
    const int serial = dice_.between(100000, 999999);
    for (int i = 1; i <= quantity; ++i)
        receipt.supplierSerials.append(QStringLiteral("SN%1-%2").arg(serial).arg(received_.size() + i));
    receipt.supplierReference = article[strarticle.art_rfou];
    receipt.operatorWord = QStringLiteral("DEMO");
    const QString type = article[strarticle.art_typ];
    if (type == u"N") return receipt;
    receipt.certificate1 = QStringLiteral("C1-%1").arg(dice_.between(1000, 9999));
    receipt.certificate2 = QStringLiteral("C2-%1").arg(dice_.between(1000, 9999));
    receipt.registerEntry =
        type == u"G" ? dateText(day.addDays(-60)) : QStringLiteral("R%1").arg(dice_.between(100, 999));
    receipt.pieces = QString::number(quantity);
    if (type == u"F" && dice_.chance(4)) {
        receipt.conformity = dice_.chance(50) ? QStringLiteral("X") : QStringLiteral("Y");
        receipt.cause = QStringLiteral("01");
    }
    return receipt;
}

void Life::receive(const Progress& progress) {
    const int months = std::max(18, units_ / UnitsPerMonth + 1);
    const QDate first = today_.addMonths(-months);
    const qint64 days = first.daysTo(today_);
    Workspace workspace;
    const UnitFiles files = openUnitFiles(workspace, session_);
    Database molven = files.molven;
    Transaction transaction(workspace, Deed);
    Recordset articles = molven.select(strarticle, strarticle.art_aig == follow_up::ByUnit, strarticle.art_ref);
    int left = units_;
    while (left > 0) {
        tell(progress, units_ - left, Shares * units_);
        const QDate day = first.addDays(1 + (units_ - left) * (days - 1) / units_);
        const int quantity = std::min({left, dice_.between(1, 20), 200});
        articles.moveTo(dice_.below(static_cast<int>(articles.count())));
        Clock::set(day);
        const receipts::Created created =
            receipts::receive(files, session_.rules(), receiptOf(articles.record(), day, quantity));
        Immatriculation unit = Immatriculation::fromText(created.first);
        for (int i = 0; i < quantity; ++i) received_.push_back({unit.plus(i).number(), day});
        left -= quantity;
    }
    transaction.commit();
}

/// Seven units of ten leave, in groups of one to four received at about the same time.
void Life::plan() {
    for (std::size_t i = 0; i < received_.size();) {
        const auto size = static_cast<std::size_t>(dice_.between(1, 4));
        QStringList group;
        QDate last;
        for (; group.size() < static_cast<qsizetype>(size) && i < received_.size(); ++i) {
            group.append(received_[i].immatriculation);
            last = received_[i].day;
        }
        if (dice_.chance(70)) planGroup(group, last);
    }
    std::stable_sort(events_.begin(), events_.end(), [](const Event& a, const Event& b) { return a.day < b.day; });
}

void Life::planGroup(const QStringList& units, const QDate& lastReceipt) {
    const int client = dice_.between(1, 40);
    const QDate day = later(lastReceipt, 2, 120);
    const int kind = dice_.below(100);
    if (kind < 55) {
        add({day, Event::Kind::Delivery, client, units});
        if (dice_.chance(65)) add({later(day, 3, 30), Event::Kind::NoteInvoiced, client, units});
    } else if (kind < 70) {
        add({day, Event::Kind::Invoice, client, units});
        if (dice_.chance(20)) add({later(day, 5, 40), Event::Kind::Credit, client, units.mid(0, 1)});
    } else if (kind < 80) {
        add({day, Event::Kind::Consignment, client, units});
        if (dice_.chance(20)) add({later(day, 5, 40), Event::Kind::ConsignmentCredit, client, units.mid(0, 1)});
    } else if (kind < 98) {
        add({day, Event::Kind::Transfer, client, units});
        if (dice_.chance(50)) add({later(day, 5, 60), Event::Kind::Invoice, client, units.mid(0, 1)});
    } else {
        add({day, Event::Kind::Set, client, units});
    }
}

SalesBook& Life::bookOf(const Event& event) {
    switch (event.kind) {
    case Event::Kind::Delivery:
        return deliveries_;
    case Event::Kind::Consignment:
        return consignments_;
    case Event::Kind::ConsignmentCredit:
        return consignmentCredits_;
    case Event::Kind::Credit:
        return credits_;
    case Event::Kind::Transfer:
        return transfers_;
    default:
        return invoices_;
    }
}

void Life::write(const Progress& progress) {
    for (qsizetype i = 0; i < events_.size();) {
        // Each book is a connection of its own: one after the other takes the write lock for its run of events.
        Workspace* workspace = nullptr;
        std::optional<Transaction> transaction;
        for (int count = 0; i < events_.size() && count < DocumentsPerCommit; ++i, ++count) {
            tell(progress, events_.size() + (Shares - 1) * i, Shares * events_.size());
            const Event& event = events_[i];
            SalesBook& book = bookOf(event);
            if (&book.workspace != workspace) {
                if (transaction) transaction->commit();
                transaction.reset();
                transaction.emplace(book.workspace);
                workspace = &book.workspace;
            }
            Clock::set(event.day);
            write(event);
        }
        if (transaction) transaction->commit();
    }
}

void Life::write(const Event& event) {
    switch (event.kind) {
    case Event::Kind::NoteInvoiced:
        return invoiceNote(event);
    case Event::Kind::Transfer:
        return transfer(event);
    case Event::Kind::Set:
        return fillSet(event);
    default:
        return writeSale(bookOf(event), event);
    }
}

Record headerOf(SalesBook& book, const Event& event, Dice& dice) {
    Record header = documents::blank(book, QString::number(event.client));
    const DocumentHeaders& table = book.kind().headers;
    header[table.fac_pat] = patientName(dice);
    header[table.fac_chr] = QString::number(dice.between(1, 20)).rightJustified(3, u'0');
    header[table.fac_refc] = QStringLiteral("CDE %1").arg(dice.between(1000, 9999));
    return documents::create(book, header);
}

void Life::writeSale(SalesBook& book, const Event& event) {
    const Record header = headerOf(book, event, dice_);
    QList<document_lines::Draft> drafts;
    for (const QString& number : event.units)
        drafts.append(document_lines::ofUnit(book, header, unit_rules::check(book, header, number)));
    if (dice_.chance(20) && !book.kind().isCredit) {
        document_lines::Draft draft = document_lines::preset(
            book, header, QStringLiteral("VSP%1").arg(15 + 5 * dice_.below(24), 3, 10, QLatin1Char('0')));
        draft.line[book.kind().lines.fac_qte] = Decimal(dice_.between(1, 3));
        drafts.append(draft);
    }
    document_lines::add(book, header, drafts);
}

void Life::invoiceNote(const Event& event) {
    const auto unit = units::find(invoices_.molven, Immatriculation::fromText(event.units.first()));
    const Record header = headerOf(invoices_, event, dice_);
    integration::integrate(invoices_, header, (*unit)[strproduit.num_vte]);
}

void Life::transfer(const Event& event) {
    Record header = documents::blank(transfers_, QString::number(event.client));
    header[strbtre.fac_depd] = MainDepot;
    transfer_notes::write(transfers_, header, event.units);
}

void Life::fillSet(const Event& event) {
    const QString serial = ancillary_sets::create(ancillaire_, QStringLiteral("ANCHAN"));
    for (const QString& unit : event.units)
        ancillary_sets::place({invoices_.molven, ancillaire_, session_.rules()}, serial, unit);
}

/// A type of which there is no set yet.
void addKneeSet(const Session& session) {
    Workspace workspace;
    const set_types::Files files{workspace.open(session.molven()), workspace.open(session.path(DataFile::Compta)),
                                 workspace.open(session.path(DataFile::Ancillaire))};
    Transaction transaction(workspace, QStringLiteral("Démonstration"));
    Record type(strancillaire);
    type[strancillaire.anc_code] = QStringLiteral("KITGEN");
    type[strancillaire.anc_lib] = QStringLiteral("ANCILLAIRE DE GENOU");
    type[strancillaire.anc_tva] = QStringLiteral("1");
    set_types::save(files, type, std::nullopt);
    for (const auto& [reference, quantity] : {std::pair("CFG001", "2"), std::pair("CFG002", "2")})
        set_types::saveComponent(files, QStringLiteral("KITGEN"), QString::fromLatin1(reference),
                                 QString::fromLatin1(quantity), std::nullopt);
    transaction.commit();
}

/// Who sells, on paper. No such company, bank or account exists.
void nameSeller(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    const Record unknown = seller::read(molven);
    Record identity = unknown;
    const auto& e = stremetteur;
    const std::pair<const Field*, const char*> values[]{
        {&e.emt_jur, "SAS"},
        {&e.emt_cap, "150000"},
        {&e.emt_l1, "12 RUE DES LILAS"},
        {&e.emt_cp, "69003"},
        {&e.emt_vil, "LYON"},
        {&e.emt_tel, "04 00 00 00 00"},
        {&e.emt_mail, "facturation@demonstration.example"},
        {&e.emt_siret, "89812345000014"},
        {&e.emt_rcs, "RCS Lyon"},
        {&e.emt_ape, "4646Z"},
        {&e.emt_tva, "FR04898123450"},
        {&e.emt_bque, "BANQUE DE DEMONSTRATION"},
        {&e.emt_iban, "FR7619999000010000012345602"},
        {&e.emt_bic, "DEMOFR2L"},
        {&e.emt_exo, "Exonération, article 261 du code général des impôts"}};
    for (const auto& [field, value] : values) identity.set(*field, QString::fromUtf8(value));
    seller::save(molven, identity, unknown);
}

/// The clients' own accounts, which the transfer to accounting looks for in the chart.
void addClientAccounts(const Session& session) {
    Workspace workspace;
    const Database molven = workspace.open(session.molven());
    client_accounts::open(molven, workspace.open(session.path(DataFile::Compta)));
}

/// The number with the last digit that its check asks for.
QString keyed(const QString& digits, bool (*holds)(const QString&)) {
    for (char16_t key = u'0'; key <= u'9'; ++key)
        if (holds(digits + key)) return digits + key;
    return {};
}

/// Electronic invoices want the numbers of the hospitals, which are as invented as they are.
void nameClients(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Transaction transaction(workspace, Deed);
    for (const QStringList& client : molven.values(strclient, {&strclient.clt_cod})) {
        const QString& code = client.first();
        const QString siren = keyed(QStringLiteral("89") + code, identifiers::isSiren);
        molven.update(strclient, {{strclient.clt_nic, keyed(siren + QStringLiteral("0001"), identifiers::isSiret)}},
                      strclient.clt_cod == code);
    }
    transaction.commit();
}

void fill(const Session& session, const Options& options, const Progress& progress) {
    const ClockKeeper clock;
    Dice dice(options.seed);
    fillReference(session, dice);
    Life life(session, options, dice, clock.today());
    life.receive(progress);
    life.plan();
    life.write(progress);
    addKneeSet(session);
    nameSeller(session);
    addClientAccounts(session);
    nameClients(session);
}

} // namespace

Session create(const QString& folder, const QString& code, const Options& options, const Progress& progress) {
    return creation::create({folder, code, QStringLiteral("DISTRIBUTION DEMONSTRATION"), false, options.server},
                            [&](const Session& session) { fill(session, options, progress); });
}

} // namespace molven::demo
