#include "support/dossier.h"

#include "data/format.h"
#include "dossier/creation.h"
#include "dossier/passing_folder.h"
#include "reference/articles.h"
#include "reference/code_tables.h"
#include "reference/ean.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "sales/documents.h"
#include "sales/unit_rules.h"
#include "stock/units.h"

#include <map>

namespace molven::test {

namespace {

void addEntry(Database molven, const QString& letter, const QString& code, const QString& label,
              const QString& family = {}) {
    Record entry(strparam);
    entry[strparam.cod_par] = letter;
    entry[strparam.num_par] = code;
    entry[strparam.lib_par] = label;
    entry[strparam.fam_dep] = family;
    code_tables::add(molven, code_tables::parameters(), entry);
}

/// A depot of a family of its own.
void addDepot(Database molven, const QString& code, const QString& family) {
    addEntry(molven, list::DepotFamily, family, QStringLiteral("SECTEUR ") + family);
    addEntry(molven, list::Depot, code, QStringLiteral("DEPOT ") + code, family);
}

void addClient(Database molven, const QString& name, const QString& depot, const QString& discount) {
    Record client = parties::blankClient(molven);
    client[strclient.clt_nom] = name;
    client[strclient.clt_dep] = depot;
    client[strclient.clt_rem] = discount;
    client[strclient.clt_l1] = QStringLiteral("1 RUE DE L'HÔPITAL");
    parties::saveClient(molven, client, std::nullopt);
}

struct Sample {
    const char* reference;
    const char* type;
    const char* stocked;
    const char* followed;
};

void addArticle(Database molven, Database compta, Database gencode, const CompanyRules& rules, const Sample& sample) {
    articles::Entry entry;
    entry.kind = sample.type[0] == 'T' ? QStringLiteral("T") : QStringLiteral("A");
    entry.stocked = QString::fromLatin1(sample.stocked);
    entry.followed = QString::fromLatin1(sample.followed);
    Record& article = entry.article;
    article[strarticle.art_ref] = QString::fromLatin1(sample.reference);
    article[strarticle.art_li1] = QStringLiteral("ARTICLE ") + QString::fromLatin1(sample.reference);
    article[strarticle.art_typ] = entry.kind == u"T" ? QString() : QString::fromLatin1(sample.type);
    article[strarticle.art_hom] = QStringLiteral("N");
    article[strarticle.art_ste] = QStringLiteral("O");
    article[strarticle.art_lpp] = QStringLiteral("3100001");
    article[strarticle.art_fou] = QStringLiteral("000001");
    article[strarticle.art_fam] = QStringLiteral("000");
    article[strarticle.art_ori] = sample.type[0] == 'G' ? QStringLiteral("H") : QString();
    article[strarticle.art_rem] = QStringLiteral("1");
    article[strarticle.art_pv1] = Decimal(100);
    article[strarticle.art_ttc] = *Decimal::parse(QStringLiteral("105.50"));
    articles::save(molven, compta, gencode, rules, entry, std::nullopt);
}

} // namespace

namespace {

/// A dossier of each company on the server, from which the others are copied.
const DataFolder& original(const QString& company) {
    static std::map<QString, std::unique_ptr<DataFolder>> made;
    std::unique_ptr<DataFolder>& data = made[company];
    if (!data) {
        data = std::make_unique<DataFolder>();
        Dossier::addReference(creation::create({data->address(), company, QStringLiteral("SOCIETE D'ESSAI"), false}));
    }
    return *data;
}

} // namespace

Dossier::Dossier(const QString& company) {
    if (DataFolder::isOnServer()) {
        data_ = std::make_unique<DataFolder>(&original(company));
        passing_folder::make(folder_.path(), data_->address());
        session = creation::open(folder_.path());
        return;
    }
    session = creation::create({folder_.path(), company, QStringLiteral("SOCIETE D'ESSAI"), false});
    addReference(session);
}

void Dossier::addReference(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Database compta = workspace.open(session.path(DataFile::Compta));
    Database gencode = workspace.open(session.path(DataFile::Gencode));
    Transaction transaction(workspace);
    addDepot(molven, QStringLiteral("101"), QStringLiteral("EST"));
    addDepot(molven, QStringLiteral("102"), QStringLiteral("OUE"));
    Record discount(strparrem);
    discount[strparrem.rem_clt] = QStringLiteral("A");
    discount[strparrem.rem_art] = QStringLiteral("1");
    discount[strparrem.rem_rem] = Decimal(10);
    molven.insert(discount);
    addClient(molven, QStringLiteral("CLINIQUE DE L'ÉTOILE"), QStringLiteral("101"), QStringLiteral("A"));
    addClient(molven, QStringLiteral("HOPITAL SUD"), QStringLiteral("102"), {});
    Record supplier(strfournis);
    supplier[strfournis.fou_cod] = QStringLiteral("000001");
    supplier[strfournis.fou_nom] = QStringLiteral("FABRICANT");
    supplier[strfournis.fou_rglt] = QStringLiteral("01");
    molven.insert(supplier);
    Record lpp(strlpp);
    lpp[strlpp.lpp_code] = QStringLiteral("3100001");
    lpp[strlpp.lpp_lib] = QStringLiteral("HANCHE, COTYLE");
    molven.insert(lpp);
    for (int i = 1; i <= 2; ++i) {
        Record free(strgencode);
        const QString digits = QStringLiteral("37600000000%1").arg(i);
        free[strgencode.ean_code] = digits + ean::checkDigit(digits);
        gencode.insert(free);
    }
    const Sample samples[] = {{"HIP", "N", "O", "O"},   {"CUP", "F", "O", "O"},  {"GRAFT", "G", "O", "O"},
                              {"SCREW", "N", "O", "N"}, {"NOTE", "T", "N", "N"}, {"FEE", "N", "N", "N"}};
    for (const Sample& sample : samples) addArticle(molven, compta, gencode, session.rules(), sample);
    transaction.commit();
}

Receipt Dossier::receipt(const QString& reference, int quantity, const QString& day) {
    Receipt receipt;
    receipt.reference = reference;
    receipt.supplier = QStringLiteral("1");
    receipt.deliveryNumber = QStringLiteral("BL1");
    receipt.deliveryDate = day;
    receipt.quantity = QString::number(quantity);
    receipt.purchasePrice = QStringLiteral("50");
    receipt.lot = QStringLiteral("LOT-1");
    receipt.certificate1 = QStringLiteral("C1");
    receipt.certificate2 = QStringLiteral("C2");
    receipt.registerEntry = QStringLiteral("01/02/2026");
    receipt.pieces = QString::number(quantity);
    receipt.expiryDate = QStringLiteral("12/2030");
    return receipt;
}

QStringList Dossier::receive(const QString& reference, int quantity, const QString& day) {
    Workspace workspace;
    const receipts::Created created =
        receipts::receive(openUnitFiles(workspace, session), session.rules(), receipt(reference, quantity, day));
    QStringList numbers;
    const Immatriculation first = Immatriculation::fromText(created.first);
    for (int i = 0; i < quantity; ++i) numbers.append(first.plus(i).number());
    return numbers;
}

QString Dossier::document(const QString& mode, const QStringList& units, const QString& client) {
    SalesBook book(session, documentKind(mode));
    const Record header = newDocument(book, client);
    QList<document_lines::Draft> drafts;
    for (const QString& unit : units) drafts.append(lineOfUnit(book, header, unit));
    document_lines::add(book, header, drafts);
    return header[book.kind().headers.fac_no];
}

Record Dossier::unit(const QString& immatriculation) {
    Workspace workspace;
    return units::find(workspace.open(session.molven()), Immatriculation::fromText(immatriculation)).value();
}

Decimal Dossier::stock(const QString& reference) {
    Workspace workspace;
    const Record article = articles::find(workspace.open(session.molven()), reference).value();
    return article[strarticle.art_stk];
}

Record newDocument(SalesBook& book, const QString& client) {
    const DocumentHeaders& table = book.kind().headers;
    Record header = documents::blank(book, client);
    header[table.fac_datf] = QStringLiteral("10/03/2026");
    header[table.fac_pat] = QStringLiteral("D'ALMEIDA Hélène");
    if (book.kind().isTransfer()) header[strbtre.fac_depd] = MainDepot;
    return documents::create(book, header);
}

document_lines::Draft lineOfUnit(SalesBook& book, const Record& header, const QString& number) {
    return document_lines::ofUnit(book, header, unit_rules::check(book, header, number));
}

document_lines::Draft lineOfArticle(SalesBook& book, const Record& header, const QString& reference, int quantity) {
    document_lines::Draft draft = document_lines::preset(book, header, reference);
    if (!draft.isText) draft.line[book.kind().lines.fac_qte] = Decimal(quantity);
    return draft;
}

} // namespace molven::test
