#include "screens/accounting/statistics_form.h"

#include "data/clock.h"
#include "data/format.h"
#include "reference/code_kinds.h"
#include "sales/document_kind.h"
#include "sales/documents.h"
#include "screens/accounting/figures.h"
#include "screens/accounting/report_columns.h"
#include "screens/sales/document_form.h"
#include "ui/edit.h"
#include "ui/figure_chart.h"
#include "ui/progress.h"
#include "ui/style.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSplitter>

#include <map>

namespace molven {

using statistics::Query;
using statistics::SalesReport;
using statistics::Sorting;

namespace {

const QString ReportBox = QStringLiteral("Cmbetat"), SortingBox = QStringLiteral("Cmbtri");
constexpr qsizetype MostBars = 10;
constexpr int ChartWidth = 400; ///< pixels

/// "01/03/2030 - 31/03/2030".
QString legend(const Period& period) { return dayOfKey(period.from) + QStringLiteral(" - ") + dayOfKey(period.to); }

CriterionBox day(const char* name, const char* caption) {
    return {QString::fromLatin1(name), QString::fromUtf8(caption), 10, CriterionBox::Kind::Day};
}

CriterionBox code(const char* name, const char* caption, const CodeKind* kind, int characters, bool isBound = false) {
    return {.name = QString::fromLatin1(name),
            .caption = QString::fromUtf8(caption),
            .characters = characters,
            .isUsual = false,
            .code = kind,
            .isBound = isBound,
            .digits = kind == &codes::Client || kind == &codes::Supplier ? 6 : 0};
}

QList<CriterionBox> criteriaBoxes() {
    QStringList titles;
    for (const statistics::ReportKind& kind : statistics::reports()) titles.append(kind.title);
    return {day("Mskdatdeb", "Période du :"),
            day("Mskdatfin", "au :"),
            {.name = ReportBox, .caption = QStringLiteral("Statistique :"), .options = titles},
            {.name = SortingBox,
             .caption = QStringLiteral("Tri par :"),
             .options = {QStringLiteral("Code"), QStringLiteral("Montant")}},
            day("Mskdatdeb2", "Comparée du :"),
            day("Mskdatfin2", "au :"),
            code("txtcltdeb", "Clients du :", &codes::Client, 6, true),
            code("txtcltfin", "au :", &codes::Client, 6, true),
            code("txtcdf", "Famille client :", &codes::ClientFamily, 3),
            code("txtrefdeb", "Articles du :", &codes::Article, 13, true),
            code("txtreffin", "au :", &codes::Article, 13, true),
            code("txtfam", "Famille article :", &codes::ArticleFamily, 3),
            code("txtfou", "Fournisseur :", &codes::Supplier, 6),
            code("txtrep", "Représentant :", &codes::Representative, 3),
            code("txtchr", "Chirurgien :", &codes::Surgeon, 3),
            code("txtdep", "Département :", nullptr, 3)};
}

} // namespace

StatisticsForm::StatisticsForm(Desk& desk)
    : SelectionForm(desk, QStringLiteral("T_staedt")), files_(sales_statistics::openFiles(workspace_, session())) {
    build({.title = QStringLiteral("Statistiques"),
           .criteria = criteriaBoxes(),
           .list = {},
           .searches = {{QStringLiteral("cmdvalide"), QStringLiteral("&Valider"), [this] { select(); }}},
           .deeds = {{QStringLiteral("Cmdretour"), QStringLiteral("&Retour"), [this] { goBack(); }},
                     {QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }},
                     {QStringLiteral("Cmdexp"), QStringLiteral("E&xporter"), [this] { exportAll(); }}},
           .files = {{DataFile::Molven, files_.molven}},
           .words = QStringLiteral("Lblselect"),
           .count = QStringLiteral("Label1"),
           .size = {1260, 740}});
    bars_ = new FigureChart(QStringLiteral("graphe"), this);
    line_ = new FigureChart(QStringLiteral("graphemois"), this);
    auto* charts = new QSplitter(Qt::Vertical);
    charts->addWidget(bars_);
    charts->addWidget(line_);
    charts->setStretchFactor(0, 3);
    charts->setStretchFactor(1, 2);
    auto* beside = new QSplitter(this);
    delete layout()->replaceWidget(&list(), beside); // the place that the list had
    beside->addWidget(&list());
    beside->addWidget(charts);
    charts->setMinimumWidth(ChartWidth);
    beside->setCollapsible(0, false);
    beside->setStretchFactor(0, 1);
    beside->setSizes({2 * ChartWidth, ChartWidth});
    back_ = findChild<QPushButton*>(QStringLiteral("Cmdretour"));
    setCancelButton(back_);
    list().chosen = [this](const Record& row) { guarded([&] { open(row); }); };
    list().exportWanted = [this] { guarded([this] { exportAll(); }); };
    connect(findChild<QComboBox*>(ReportBox), &QComboBox::currentIndexChanged, this, [this] {
        report_.reset();
        clearSelection();
        showLevel();
    });
    chooseReport(mode());
}

void StatisticsForm::openedBy(const QString& entry) { chooseReport(entry.section(u'_', -1)); }

void StatisticsForm::chooseReport(const QString& number) {
    const auto& all = statistics::reports();
    const auto place = &statistics::report(number) - all.constData();
    findChild<QComboBox*>(ReportBox)->setCurrentIndex(static_cast<int>(place));
    showLevel();
}

const statistics::ReportKind& StatisticsForm::kind() const {
    return statistics::reports()[criteria().choice(ReportBox)];
}

Sorting StatisticsForm::sorting() const {
    return criteria().choice(SortingBox) == 0 ? Sorting::ByKey : Sorting::ByAmount;
}

namespace {

/// The same days a year earlier.
Period yearBefore(const Period& period) {
    const auto earlier = [](const QString& key) {
        return QDate::fromString(key, QStringLiteral("yyyyMMdd")).addYears(-1).toString(QStringLiteral("yyyyMMdd"));
    };
    return {earlier(period.from), earlier(period.to)};
}

} // namespace

Query StatisticsForm::typedQuery() const {
    const auto value = [this](const char* name) { return criteria().value(QString::fromLatin1(name)); };
    Query query;
    query.period = typedPeriod(criteria().value(From), criteria().value(To));
    if (!value("Mskdatdeb2").isEmpty() || !value("Mskdatfin2").isEmpty())
        query.compared = typedPeriod(value("Mskdatdeb2"), value("Mskdatfin2"), QStringLiteral("Mskdatdeb2"),
                                     QStringLiteral("Mskdatfin2"));
    else if (kind().isByMonth())
        query.compared = yearBefore(query.period);
    query.firstClient = value("txtcltdeb");
    query.lastClient = value("txtcltfin");
    query.clientFamily = value("txtcdf");
    query.firstArticle = value("txtrefdeb");
    query.lastArticle = value("txtreffin");
    query.articleFamily = value("txtfam");
    query.supplier = value("txtfou");
    query.representative = value("txtrep");
    query.surgeon = value("txtchr");
    query.department = value("txtdep");
    if (!query.firstClient.isEmpty() && !query.lastClient.isEmpty() &&
        padded(query.lastClient, 6) < padded(query.firstClient, 6))
        throw Refusal(QStringLiteral("N° Fin < N° Début ???"), QStringLiteral("txtcltfin"));
    return query;
}

void StatisticsForm::select() {
    const Query query = typedQuery();
    clearSelection(query.words());
    report_.reset();
    path_.clear();
    names_.clear();
    patiently(*this, workspace_, QStringLiteral("Lecture des factures"), [&] {
        statistics::prepare(files_, query);
        report_ = std::make_unique<SalesReport>(files_, kind(), query);
    });
    version_ = files_.tri.changesElsewhere();
    showLevel();
    report_columns::writeFiles(*report_, sorting(), session().chemin_tri);
}

SalesReport& StatisticsForm::report() {
    if (!report_) throw Refusal(QStringLiteral("Faire une sélection"), From);
    if (files_.tri.changesElsewhere() != version_)
        throw Refusal(QStringLiteral("Les statistiques ont été refaites ailleurs : valider de nouveau"), From);
    return *report_;
}

void StatisticsForm::showLevel() {
    back_->setEnabled(report_ && !path_.isEmpty());
    applyTitle(QStringLiteral("Statistiques : ") + kind().title);
    if (!report_) {
        list().setColumns({{&(strstat.*kind().keys.first().code), kind().keys.first().caption, 95},
                           {&strstat.sta_lib, QStringLiteral("Libellé"), 240}});
        return;
    }
    if (path_.size() < report_->kind().keys.size())
        showGroups();
    else
        showLines();
}

QString StatisticsForm::pathWords() const {
    return names_.isEmpty() ? QString() : names_.join(QStringLiteral(" > ")) + QStringLiteral("   ");
}

void StatisticsForm::showGroups() {
    const QList<Record> rows = report_->level(path_, sorting());
    list().setColumns(report_columns::groups(*report_, path_.size()),
                      QStringLiteral("stat%1-%2").arg(report_->kind().number).arg(path_.size()));
    Decimal net;
    for (const Record& row : rows) net += row[strstat.sta_net];
    showRows(rows, pathWords() + QStringLiteral("%1, C.A. net : %2")
                                     .arg(counted(rows.size(), QStringLiteral("ligne")), format(net, Amount)));
    drawCharts(rows);
}

void StatisticsForm::showLines() {
    list().setColumns(report_columns::lines(), QStringLiteral("lignes"));
    const QStringList path = path_;
    const qint64 count = report_->lines(path).count();
    showRows([this, path](const Criterion& filter, const Order& order) { return report_->lines(path, filter, order); },
             pathWords() + counted(count, QStringLiteral("ligne")) + QStringLiteral(" de facture"));
}

/// A group opens what it is made of, a line its document.
void StatisticsForm::open(const Record& row) {
    SalesReport& shown = report();
    if (path_.size() == shown.kind().keys.size()) return openDocument(row);
    const auto& key = shown.kind().keys[path_.size()];
    path_.append(row.value(strstat.*key.code));
    const QString name = row.value(strstat.sta_lib);
    names_.append(name.isEmpty() ? key.caption + u' ' + path_.last() : name);
    showLevel();
}

void StatisticsForm::goBack() {
    if (path_.isEmpty()) return;
    path_.removeLast();
    names_.removeLast();
    showLevel();
}

void StatisticsForm::openDocument(const Record& line) {
    const QString number = line.value(statd.sta_no);
    const auto header =
        files_.vente.find(strface, strface.fac_no == number && strface.fac_aa == line.value(statd.sta_aa));
    if (!header)
        throw Refusal(QStringLiteral("Ce document n'est pas parmi vos documents en cours : ") +
                      QStringLiteral("(archives)"));
    const bool isCredit = documents::isOfKind(documentKind(QStringLiteral("AVO")), *header);
    const QString mode = isCredit ? QStringLiteral("AVO") : QStringLiteral("FAC");
    if (auto* form = dynamic_cast<DocumentForm*>(desk().open(QStringLiteral("T_gestion"), mode))) form->bringUp(number);
}

void StatisticsForm::drawCharts(const QList<Record>& rows) {
    const auto& s = strstat;
    bars_->setVisible(!report_->kind().isByMonth()); // the line says the same
    QStringList names;
    std::vector<FigureChart::Series> series{{legend(report_->query().period), {}}};
    if (report_->query().compared) series.push_back({legend(*report_->query().compared), {}});
    QList<Record> greatest = rows;
    if (!report_->kind().isByMonth())
        std::stable_sort(greatest.begin(), greatest.end(),
                         [&](const Record& a, const Record& b) { return a[s.sta_net] > b[s.sta_net]; });
    for (const Record& row : greatest.mid(0, MostBars)) {
        const QString name = row[s.sta_lib];
        names.append(name.isEmpty() ? row.value(strstat.*report_->kind().keys[path_.size()].code) : name);
        series[0].amounts.push_back(row[s.sta_net].toString().toDouble());
        if (series.size() > 1) series[1].amounts.push_back(row[s.sta_net2].toString().toDouble());
    }
    const QString title =
        rows.size() > MostBars ? QStringLiteral("C.A. net, les %1 premiers").arg(MostBars) : QStringLiteral("C.A. net");
    bars_->showBars(title, names, series);
    drawMonths();
}

/// The months of both periods, side by side by their place in them.
void StatisticsForm::drawMonths() {
    const auto amountsOf = [](const Period& period, const QList<std::pair<QString, Decimal>>& months,
                              QStringList& names) {
        std::map<QString, double> byMonth;
        for (const auto& [month, amount] : months) byMonth[month] = amount.toString().toDouble();
        std::vector<double> amounts;
        const QDate last = QDate::fromString(period.to, QStringLiteral("yyyyMMdd"));
        for (QDate at = QDate::fromString(period.from.left(6), QStringLiteral("yyyyMM")); at <= last;
             at = at.addMonths(1)) {
            amounts.push_back(byMonth[at.toString(QStringLiteral("yyyyMM"))]);
            names.append(at.toString(QStringLiteral("MM")));
        }
        return amounts;
    };
    const Query& query = report_->query();
    QStringList names, comparedNames;
    std::vector<FigureChart::Series> series{{legend(query.period), amountsOf(query.period, report_->months(), names)}};
    if (query.compared) {
        series.push_back(
            {legend(*query.compared), amountsOf(*query.compared, report_->comparedMonths(), comparedNames)});
        series[1].amounts.resize(series[0].amounts.size());
    }
    line_->showLines(QStringLiteral("C.A. net par mois"), names, series);
}

/// The whole report, whatever group the list was opened at.
void StatisticsForm::print() {
    Report paper = report_columns::paper(report(), sorting());
    const QStringList path = std::exchange(path_, {});
    drawCharts(report().level({}, sorting()));
    if (!report().kind().isByMonth()) paper.picture(bars_->picture());
    paper.picture(line_->picture());
    path_ = path;
    showLevel();
    desk().print(paper);
}

/// Every row of the report, whatever the list shows of it.
void StatisticsForm::exportAll() {
    Grid all(list().objectName(), report_columns::all(report()), this);
    all.rows().setRecords(report().rows(sorting()));
    all.exportCsv();
}

} // namespace molven
