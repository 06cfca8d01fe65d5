#include "dossier/demo_reference.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "dossier/demo.h"
#include "reference/articles.h"
#include "reference/code_tables.h"
#include "reference/ean.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "stock/movements.h"

namespace molven::demo {

namespace {

const QStringList Towns{QStringLiteral("69008 LYON"),
                        QStringLiteral("38000 GRENOBLE"),
                        QStringLiteral("42000 SAINT-ETIENNE"),
                        QStringLiteral("74000 ANNECY"),
                        QStringLiteral("01000 BOURG-EN-BRESSE"),
                        QStringLiteral("13005 MARSEILLE"),
                        QStringLiteral("06000 NICE"),
                        QStringLiteral("34000 MONTPELLIER"),
                        QStringLiteral("31000 TOULOUSE"),
                        QStringLiteral("33000 BORDEAUX"),
                        QStringLiteral("44000 NANTES"),
                        QStringLiteral("35000 RENNES"),
                        QStringLiteral("29200 BREST"),
                        QStringLiteral("76000 ROUEN"),
                        QStringLiteral("59000 LILLE"),
                        QStringLiteral("80000 AMIENS"),
                        QStringLiteral("51100 REIMS"),
                        QStringLiteral("54000 NANCY"),
                        QStringLiteral("67000 STRASBOURG"),
                        QStringLiteral("21000 DIJON")};
const QStringList Houses{QStringLiteral("CLINIQUE SAINT-LUC"), QStringLiteral("CENTRE HOSPITALIER"),
                         QStringLiteral("POLYCLINIQUE DU PARC"), QStringLiteral("HÔPITAL PRIVÉ DE L'OUEST"),
                         QStringLiteral("CLINIQUE DES CÈDRES")};
const QStringList Surnames{
    QStringLiteral("MARTIN"), QStringLiteral("DURAND"),    QStringLiteral("LEFÈVRE"), QStringLiteral("D'ALMEIDA"),
    QStringLiteral("MOREAU"), QStringLiteral("GIRARD"),    QStringLiteral("ROUX"),    QStringLiteral("FAURE"),
    QStringLiteral("BLANC"),  QStringLiteral("GUÉRIN"),    QStringLiteral("PERRIN"),  QStringLiteral("CHEVALIER"),
    QStringLiteral("RENAUD"), QStringLiteral("L'HERMITE"), QStringLiteral("MEUNIER"), QStringLiteral("BARBIER")};
const QStringList FirstNames{QStringLiteral("MARIE"), QStringLiteral("JEAN"),  QStringLiteral("PAUL"),
                             QStringLiteral("ANNE"),  QStringLiteral("LUCIE"), QStringLiteral("HÉLÈNE"),
                             QStringLiteral("RENÉ"),  QStringLiteral("LOUIS"), QStringLiteral("CLAIRE"),
                             QStringLiteral("DENISE")};
const QStringList SupplierNames{QStringLiteral("ORTHALPIN"),         QStringLiteral("BIOCERAM LYONNAISE"),
                                QStringLiteral("IMPLANTS DU RHONE"), QStringLiteral("OSSATEC"),
                                QStringLiteral("PROTHEOS"),          QStringLiteral("ARTHRONOVA"),
                                QStringLiteral("TITANE & CO"),       QStringLiteral("BANQUE DE TISSUS DU CENTRE"),
                                QStringLiteral("MEDIVIS"),           QStringLiteral("CIMEDENT"),
                                QStringLiteral("SCAPULA IMPLANTS"),  QStringLiteral("L'ATELIER CHIRURGICAL")};

QString numbered(int number, int width) { return QString::number(number).rightJustified(width, u'0'); }

void addParameter(Database molven, const QString& letter, const QString& code, const QString& label,
                  const QString& account = {}, const QString& family = {}) {
    Record entry(strparam);
    entry[strparam.cod_par] = letter;
    entry[strparam.num_par] = code;
    entry[strparam.lib_par] = label;
    entry[strparam.cpt_par] = account;
    entry[strparam.fam_dep] = family;
    code_tables::add(molven, code_tables::parameters(), entry);
}

struct Named {
    QString letter, code, label;
};

void fillLists(Database molven) {
    const Named entries[] = {{list::ArticleFamily, QStringLiteral("HAN"), QStringLiteral("HANCHE")},
                             {list::ArticleFamily, QStringLiteral("GEN"), QStringLiteral("GENOU")},
                             {list::ArticleFamily, QStringLiteral("EPA"), QStringLiteral("EPAULE")},
                             {list::ArticleFamily, QStringLiteral("SUB"), QStringLiteral("SUBSTITUTS OSSEUX")},
                             {list::ArticleFamily, QStringLiteral("VIS"), QStringLiteral("VIS ET CIMENTS")},
                             {list::AncillaryFamily, QStringLiteral("ANC"), QStringLiteral("ANCILLAIRES")},
                             {list::ClientFamily, QStringLiteral("PUB"), QStringLiteral("HOPITAUX PUBLICS")},
                             {list::ClientFamily, QStringLiteral("PRI"), QStringLiteral("CLINIQUES PRIVEES")},
                             {list::SupplierFamily, QStringLiteral("FAB"), QStringLiteral("FABRICANTS")},
                             {list::DepotFamily, QStringLiteral("EST"), QStringLiteral("SECTEUR EST")},
                             {list::DepotFamily, QStringLiteral("OUE"), QStringLiteral("SECTEUR OUEST")},
                             {list::Dispatch, QStringLiteral("01"), QStringLiteral("TRANSPORTEUR EXPRESS")},
                             {list::Dispatch, QStringLiteral("02"), QStringLiteral("PORTE PAR LE REPRESENTANT")},
                             {list::Dispatch, QStringLiteral("03"), QStringLiteral("TAXI")},
                             {list::Reworked, QStringLiteral("01"), QStringLiteral("RETOUCHE DE SURFACE")},
                             {list::Derogated, QStringLiteral("01"), QStringLiteral("ECART DE MARQUAGE ACCEPTE")},
                             {list::Scrapped, QStringLiteral("01"), QStringLiteral("EMBALLAGE PERCE")}};
    for (const Named& entry : entries) addParameter(molven, entry.letter, entry.code, entry.label);
    for (int i = 0; i < 6; ++i)
        addParameter(molven, list::Representative, numbered(i + 1, 3), Surnames[i] + u' ' + FirstNames[i]);
    for (int i = 0; i < 20; ++i)
        addParameter(molven, list::Surgeon, numbered(i + 1, 3),
                     QStringLiteral("DR ") + Surnames[i % Surnames.size()] + u' ' +
                         FirstNames[(i * 3) % FirstNames.size()]);
}

void fillSuppliers(Database molven, Dice& dice) {
    for (int i = 0; i < SupplierNames.size(); ++i) {
        Record supplier(strfournis);
        supplier[strfournis.fou_cod] = numbered(i + 1, 6);
        supplier[strfournis.fou_nom] = SupplierNames[i];
        supplier[strfournis.fou_abr] = SupplierNames[i].left(10);
        supplier[strfournis.fou_l1] = QStringLiteral("%1 RUE DE L'INDUSTRIE").arg(dice.between(1, 90));
        supplier[strfournis.fou_l5] = dice.oneOf(Towns);
        supplier[strfournis.fou_fam] = QStringLiteral("FAB");
        supplier[strfournis.fou_rglt] = QStringLiteral("02");
        supplier[strfournis.fou_cpt] = QStringLiteral("401000000");
        molven.insert(supplier);
    }
}

void fillClients(Database molven, Dice& dice) {
    for (int i = 0; i < 40; ++i) {
        const QString& town = Towns[i % Towns.size()];
        const QString name = (Houses[i % Houses.size()] + u' ' + town.section(u' ', 1)).left(40);
        const QString depot = numbered(101 + i, 3);
        addParameter(molven, list::Depot, depot, name, {}, i % 2 ? QStringLiteral("EST") : QStringLiteral("OUE"));
        Record client = parties::blankClient(molven);
        client[strclient.clt_nom] = name;
        client[strclient.clt_resp] = QStringLiteral("PHARMACIE A USAGE INTERIEUR");
        client[strclient.clt_l1] = QStringLiteral("%1 AVENUE DE LA GARE").arg(dice.between(1, 120));
        client[strclient.clt_l5] = town;
        client[strclient.clt_liv1] = QStringLiteral("BLOC OPERATOIRE");
        client[strclient.clt_liv2] = client[strclient.clt_l1];
        client[strclient.clt_liv5] = town;
        client[strclient.clt_tel1] = QStringLiteral("04 00 00 %1 %2").arg(numbered(i, 2), numbered(dice.below(100), 2));
        client[strclient.clt_cpt] = numbered(411000 + i, 6);
        client[strclient.clt_rgt] = i % 2 ? QStringLiteral("04") : QStringLiteral("02");
        client[strclient.clt_fam] = i % 5 == 1 ? QStringLiteral("PUB") : QStringLiteral("PRI");
        client[strclient.clt_dep] = depot;
        client[strclient.clt_rep] = numbered(i % 6 + 1, 3);
        client[strclient.clt_exp] = QStringLiteral("01");
        client[strclient.clt_rem] = i % 4 == 0 ? QStringLiteral("A") : QString();
        client[strclient.clt_memo] = i % 7 == 0 ? QStringLiteral("Livrer avant 8 h, quai n° 2.") : QString();
        parties::saveClient(molven, client, std::nullopt);
    }
}

QString lppCode(int number) { return QString::number(3100000 + number * 1237); }

/// What the reimbursement list tells apart; the codes take the subjects in turn.
const QStringList& subjects() {
    static const QStringList all{QStringLiteral("HANCHE, TIGE FEMORALE"),
                                 QStringLiteral("HANCHE, COTYLE"),
                                 QStringLiteral("HANCHE, TETE"),
                                 QStringLiteral("GENOU, COMPOSANT FEMORAL"),
                                 QStringLiteral("GENOU, EMBASE TIBIALE"),
                                 QStringLiteral("EPAULE, TIGE HUMERALE"),
                                 QStringLiteral("SUBSTITUT OSSEUX SYNTHETIQUE"),
                                 QStringLiteral("GREFFON OSSEUX"),
                                 QStringLiteral("OSTEOSYNTHESE, VIS ET CIMENT")};
    return all;
}

void fillReimbursement(Database molven, Dice& dice) {
    for (int i = 0; i < 45; ++i) {
        Record lpp(strlpp);
        lpp[strlpp.lpp_code] = lppCode(i);
        lpp[strlpp.lpp_lib] = subjects()[i % subjects().size()] + QStringLiteral(", MODELE %1").arg(i + 1);
        lpp[strlpp.lpp_ttc] = Decimal(dice.between(60, 1800));
        lpp[strlpp.lpp_tips] = QStringLiteral("%1B%2").arg(300 + i / 4).arg(numbered(i % 4 + 1, 2));
        molven.insert(lpp);
        if (i >= 16) continue;
        Record tips(strpartips);
        tips[strpartips.cod_tips] = lpp[strlpp.lpp_tips];
        tips[strpartips.lib_tips] = lpp[strlpp.lpp_lib];
        tips[strpartips.ttc_tips] = lpp[strlpp.lpp_ttc];
        molven.insert(tips);
    }
}

/// A family of articles that differ by their size.
struct Range {
    QString prefix, label, unit, family, type;
    int first, step, count;
    QString followUp; ///< follow_up code
    int subject = 8;  ///< of reimbursement
};

const QList<Range>& ranges() {
    static const QList<Range> all{
        {QStringLiteral("TFC"), QStringLiteral("TIGE FEMORALE CIMENTEE TAILLE"), QString(), QStringLiteral("HAN"),
         QStringLiteral("N"), 1, 1, 16, QStringLiteral("O"), 0},
        {QStringLiteral("TFS"), QStringLiteral("TIGE FEMORALE SANS CIMENT TAILLE"), QString(), QStringLiteral("HAN"),
         QStringLiteral("F"), 1, 1, 20, QStringLiteral("O"), 0},
        {QStringLiteral("COT"), QStringLiteral("CUPULE ACETABULAIRE DIAM."), QStringLiteral("MM"),
         QStringLiteral("HAN"), QStringLiteral("N"), 40, 2, 16, QStringLiteral("O"), 1},
        {QStringLiteral("TET"), QStringLiteral("TETE FEMORALE CERAMIQUE DIAM."), QStringLiteral("MM"),
         QStringLiteral("HAN"), QStringLiteral("N"), 22, 2, 12, QStringLiteral("O"), 2},
        {QStringLiteral("INS"), QStringLiteral("INSERT POLYETHYLENE DIAM."), QStringLiteral("MM"),
         QStringLiteral("HAN"), QStringLiteral("F"), 22, 2, 20, QStringLiteral("O"), 1},
        {QStringLiteral("CFG"), QStringLiteral("COMPOSANT FEMORAL GENOU TAILLE"), QString(), QStringLiteral("GEN"),
         QStringLiteral("N"), 1, 1, 24, QStringLiteral("O"), 3},
        {QStringLiteral("EMB"), QStringLiteral("EMBASE TIBIALE TAILLE"), QString(), QStringLiteral("GEN"),
         QStringLiteral("N"), 1, 1, 24, QStringLiteral("O"), 4},
        {QStringLiteral("PLA"), QStringLiteral("PLATEAU TIBIAL EPAISSEUR"), QStringLiteral("MM"), QStringLiteral("GEN"),
         QStringLiteral("N"), 8, 1, 24, QStringLiteral("O"), 4},
        {QStringLiteral("ROT"), QStringLiteral("IMPLANT ROTULIEN DIAM."), QStringLiteral("MM"), QStringLiteral("GEN"),
         QStringLiteral("N"), 24, 1, 16, QStringLiteral("O"), 4},
        {QStringLiteral("THU"), QStringLiteral("TIGE HUMERALE TAILLE"), QString(), QStringLiteral("EPA"),
         QStringLiteral("N"), 6, 1, 16, QStringLiteral("O"), 5},
        {QStringLiteral("GLE"), QStringLiteral("GLENOSPHERE DIAM."), QStringLiteral("MM"), QStringLiteral("EPA"),
         QStringLiteral("F"), 32, 2, 10, QStringLiteral("O"), 5},
        {QStringLiteral("SGR"), QStringLiteral("SUBSTITUT OSSEUX GRANULES"), QStringLiteral("CC"),
         QStringLiteral("SUB"), QStringLiteral("N"), 1, 1, 20, QStringLiteral("O"), 6},
        {QStringLiteral("SBL"), QStringLiteral("SUBSTITUT OSSEUX BLOC"), QStringLiteral("MM"), QStringLiteral("SUB"),
         QStringLiteral("N"), 10, 5, 12, QStringLiteral("O"), 6},
        {QStringLiteral("ALL"), QStringLiteral("TETE FEMORALE ALLOGREFFE LOT"), QString(), QStringLiteral("SUB"),
         QStringLiteral("G"), 1, 1, 14, QStringLiteral("O"), 7},
        {QStringLiteral("VSP"), QStringLiteral("VIS SPONGIEUSE 6,5 X"), QStringLiteral("MM"), QStringLiteral("VIS"),
         QStringLiteral("N"), 15, 5, 24, QStringLiteral("K")},
        {QStringLiteral("CIM"), QStringLiteral("CIMENT ORTHOPEDIQUE"), QStringLiteral("G"), QStringLiteral("VIS"),
         QStringLiteral("N"), 20, 20, 6, QStringLiteral("K")},
        {QStringLiteral("MEC"), QStringLiteral("MECHE DIAM."), QStringLiteral("MM"), QStringLiteral("VIS"),
         QStringLiteral("N"), 2, 1, 12, QStringLiteral("K")},
        {QStringLiteral("LOC"), QStringLiteral("LOCATION ANCILLAIRE FORFAIT"), QString(), QStringLiteral("VIS"),
         QStringLiteral("N"), 1, 1, 8, QStringLiteral("N")},
        {QStringLiteral("TXT"), QStringLiteral("MENTION"), QString(), QString(), QString(), 1, 1, 6,
         QStringLiteral("T")}};
    return all;
}

articles::Entry entryOf(const Range& range, int size, int number, Dice& dice) {
    articles::Entry entry;
    const bool text = range.followUp == follow_up::TextLine;
    entry.kind = text ? QStringLiteral("T") : QStringLiteral("A");
    entry.stocked = range.followUp == follow_up::ByUnit || range.followUp == follow_up::ByMovements
                        ? QStringLiteral("O")
                        : QStringLiteral("N");
    entry.followed = range.followUp == follow_up::ByUnit ? QStringLiteral("O") : QStringLiteral("N");
    Record& article = entry.article;
    article[strarticle.art_ref] = range.prefix + numbered(size, 3);
    article[strarticle.art_rfou] = QStringLiteral("F-%1-%2").arg(range.prefix).arg(size);
    article[strarticle.art_li1] = QStringLiteral("%1 %2%3").arg(range.label).arg(size).arg(range.unit);
    if (text) return entry;
    const bool tips = number % 11 == 0;
    article[strarticle.art_typ] = range.type;
    article[strarticle.art_hom] = number % 3 ? QStringLiteral("O") : QStringLiteral("N");
    article[strarticle.art_nho] = QStringLiteral("CE %1").arg(459 + number % 7);
    article[strarticle.art_ste] = range.family == u"VIS" ? QStringLiteral("N") : QStringLiteral("O");
    article[strarticle.art_fam] = range.family;
    article[strarticle.art_fou] = numbered(number % 12 + 1, 6);
    article[strarticle.art_cat] = tips ? QStringLiteral("T") : QStringLiteral("L");
    article[strarticle.art_tip] =
        tips ? QStringLiteral("%1B%2").arg(300 + number % 4).arg(numbered(number % 4 + 1, 2)) : QString();
    article[strarticle.art_lpp] = tips ? QString()
                                  : number % 13 == 0
                                      ? SeveralLpp
                                      : lppCode(range.subject + number % 5 * static_cast<int>(subjects().size()));
    article[strarticle.art_tva] = range.followUp == follow_up::None ? QStringLiteral("2") : QStringLiteral("1");
    const Decimal price = range.followUp == follow_up::ByUnit ? dice.between(80, 1500) : dice.between(5, 120);
    const Decimal rate = range.followUp == follow_up::None ? Decimal(20) : Decimal(11) / Decimal(2);
    article[strarticle.art_pv1] = price;
    article[strarticle.art_ttc] = (price * (Decimal(100) + rate) / Decimal(100)).rounded(2);
    article[strarticle.art_res] = number % 5 ? article[strarticle.art_ttc].toFixed(2) : QString();
    article[strarticle.art_tar] = number % 4 ? QStringLiteral("H") : QStringLiteral("T");
    article[strarticle.art_rem] = number % 2 ? QStringLiteral("1") : QStringLiteral("2");
    article[strarticle.art_crp] = range.family;
    article[strarticle.art_ori] = range.type == u"G" ? QStringLiteral("H") : QStringLiteral("N");
    article[strarticle.art_gpie] = QStringLiteral("N");
    article[strarticle.art_pam] = (price / Decimal(2)).rounded(2);
    return entry;
}

Record severalLpp(const Range& range) {
    Record codes(strartlpp);
    codes[strartlpp.lpp_1] = lppCode(range.subject);
    codes[strartlpp.lpp_2] = lppCode(range.subject + static_cast<int>(subjects().size()));
    return codes;
}

/// The last articles of each range kept by quantity have movements: their stock was entered, some of it broken, the
/// rest counted.
constexpr int ArticlesWithMovements = 2;

/// An article whose stock movements will make.
struct Opening {
    QString reference;
    Decimal stock, price;
};

void addMovement(MovementFiles files, const Opening& opening, const QString& kind, const Decimal& quantity,
                 const QDate& day, const QString& comment) {
    Record movement = movements::blank(opening.reference);
    movement[strmvtstk.dat_stk] = dateText(day);
    movement[strmvtstk.eta_stk] = kind;
    movement[strmvtstk.qte_stk] = quantity;
    movement[strmvtstk.pri_stk] = opening.price;
    movement[strmvtstk.com_stk] = comment;
    movements::add(files, movement);
}

void fillMovements(MovementFiles files, const QList<Opening>& openings) {
    const QDate today = Clock::today();
    const Decimal broken = 5;
    for (const Opening& opening : openings) {
        addMovement(files, opening, movement::Entry, opening.stock + broken, today.addMonths(-17),
                    QStringLiteral("STOCK INITIAL"));
        addMovement(files, opening, movement::Exit, broken, today.addMonths(-5), QStringLiteral("CASSE"));
        addMovement(files, opening, movement::Inventory, opening.stock, today.addMonths(-2),
                    QStringLiteral("INVENTAIRE"));
    }
}

QList<Opening> fillArticles(Database molven, Database compta, Database gencode, const CompanyRules& rules, Dice& dice) {
    QList<Opening> openings;
    if (rules.allocatesEan()) ean::add(gencode, QStringLiteral("376000000000"), QStringLiteral("400"));
    int number = 0;
    for (const Range& range : ranges()) {
        for (int i = 0; i < range.count; ++i) {
            articles::Entry entry = entryOf(range, range.first + i * range.step, ++number, dice);
            if (entry.article[strarticle.art_lpp] == SeveralLpp) entry.severalLpp = severalLpp(range);
            articles::save(molven, compta, gencode, rules, entry, std::nullopt);
            const Record& article = entry.article;
            if (range.followUp != follow_up::ByMovements) continue;
            const Decimal stock = dice.between(20, 400);
            if (i < range.count - ArticlesWithMovements)
                articles::moveStock(molven, article[strarticle.art_ref], stock);
            else
                openings.append({article[strarticle.art_ref], stock, article[strarticle.art_pam]});
        }
    }
    return openings;
}

void fillDiscounts(Database molven) {
    for (const QString& category : {QStringLiteral("1"), QStringLiteral("2")}) {
        Record discount(strparrem);
        discount[strparrem.rem_clt] = QStringLiteral("A");
        discount[strparrem.rem_art] = category;
        discount[strparrem.rem_rem] = category == u"1" ? Decimal(5) : Decimal(10);
        discount[strparrem.rem_lib] = QStringLiteral("MARCHE GROUPE A / CATEGORIE ") + category;
        molven.insert(discount);
    }
}

void fillTariffs(Database molven, Dice& dice) {
    Recordset articles = molven.select(strarticle, strarticle.art_aig == follow_up::ByUnit, strarticle.art_ref);
    for (int i = 0; i < 60; ++i) {
        articles.moveTo(dice.below(static_cast<int>(articles.count())));
        const Record& article = articles.record();
        const auto client = parties::findClient(molven, QString::number(dice.between(1, 40)));
        const Criterion same =
            strtarifclt.tar_clt == (*client)[strclient.clt_cod] && strtarifclt.tar_ref == article[strarticle.art_ref];
        if (molven.count(strtarifclt, same) > 0) continue;
        Record tariff(strtarifclt);
        tariff[strtarifclt.tar_clt] = (*client)[strclient.clt_cod];
        tariff[strtarifclt.tar_ref] = article[strarticle.art_ref];
        tariff[strtarifclt.tar_nom] = (*client)[strclient.clt_nom];
        tariff[strtarifclt.tar_lib] = article[strarticle.art_li1];
        tariff[strtarifclt.tar_pvt] = (article[strarticle.art_pv1] * Decimal(9) / Decimal(10)).rounded(2);
        molven.insert(tariff);
    }
    for (int i = 1; i <= 6; ++i) {
        for (const QString& family : {QStringLiteral("HAN"), QStringLiteral("GEN"), QStringLiteral("EPA")}) {
            Record rate(strtauxrep);
            rate[strtauxrep.c_rep] = numbered(i, 3);
            rate[strtauxrep.c_nom] = parameters::label(molven, list::Representative, numbered(i, 3));
            rate[strtauxrep.c_ref] = family;
            rate[strtauxrep.c_tau] = Decimal(dice.between(2, 8));
            molven.insert(rate);
        }
    }
}

void fillSetTypes(Database ancillaire) {
    Record type(strancillaire);
    type[strancillaire.anc_code] = QStringLiteral("ANCHAN");
    type[strancillaire.anc_lib] = QStringLiteral("ANCILLAIRE DE HANCHE COMPLET");
    type[strancillaire.anc_tva] = QStringLiteral("1");
    ancillaire.insert(type);
    const std::pair<QString, int> components[] = {
        {QStringLiteral("TFC001"), 1}, {QStringLiteral("COT040"), 1}, {QStringLiteral("TET022"), 1}};
    int line = 0;
    for (const auto& [reference, quantity] : components) {
        Record component(strnomenclature);
        component[strnomenclature.anc_code] = QStringLiteral("ANCHAN");
        component[strnomenclature.anc_lg] = numbered(++line, 3);
        component[strnomenclature.anc_article] = reference;
        component[strnomenclature.anc_qte] = quantity;
        ancillaire.insert(component);
    }
    Record header(strnomenclature);
    header[strnomenclature.anc_code] = QStringLiteral("ANCHAN");
    header[strnomenclature.anc_lg] = QStringLiteral("000");
    header[strnomenclature.anc_qte] = line;
    ancillaire.insert(header);
}

} // namespace

QString patientName(Dice& dice) {
    const QString surname = dice.oneOf(Surnames);
    return surname + u' ' + dice.oneOf(FirstNames);
}

void fillReference(const Session& session, Dice& dice) {
    Workspace workspace;
    const MovementFiles files = openMovementFiles(workspace, session);
    Database molven = files.molven;
    Database compta = workspace.open(session.path(DataFile::Compta));
    Database gencode = workspace.open(session.path(DataFile::Gencode));
    Database ancillaire = workspace.open(session.path(DataFile::Ancillaire));
    Transaction transaction(workspace, Deed);
    fillLists(molven);
    fillSuppliers(molven, dice);
    fillReimbursement(molven, dice);
    fillDiscounts(molven);
    fillClients(molven, dice);
    const QList<Opening> openings = fillArticles(molven, compta, gencode, session.rules(), dice);
    fillTariffs(molven, dice);
    fillSetTypes(ancillaire);
    transaction.commit();
    fillMovements(files, openings);
}

} // namespace molven::demo
