#include "screens/shell/home_page.h"

#include "data/clock.h"
#include "screens/shell/search_box.h"
#include "ui/figure_chart.h"
#include "ui/form.h"
#include "ui/work_line.h"

#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace molven {

namespace {

/// Who may read the turnover of the months may see it drawn.
const QString TurnoverEntry = QStringLiteral("mnu_sta_99");
const QString TabsHabit = QStringLiteral("ecrans/onglets");
constexpr int ChartHeight = 240;

void empty(QLayout& layout) {
    while (QLayoutItem* item = layout.takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

std::vector<double> amountsOf(const QList<Decimal>& amounts) {
    std::vector<double> values;
    for (const Decimal& amount : amounts) values.push_back(amount.toString().toDouble());
    return values;
}

} // namespace

HomePage::HomePage(Form& form, const std::function<bool(const QString&)>& may,
                   const std::function<void(const Opening&)>& open)
    : QWidget(&form), form_(form), may_(may), open_(open), counter_(this), box_(new SearchBox(this)) {
    setObjectName(QStringLiteral("Accueil"));
    box_->search = [this](const QString& typed) { return find(typed); };
    box_->chosen = [this](const Finding& finding) { open_(openings::of(finding)); };
    counter_.began = [this] { tellWorking(true); };
    counter_.counted = [this](const std::optional<day_work::Figures>& figures) { showFigures(figures); };

    auto* list = new QWidget(this);
    lines_ = new QVBoxLayout;
    lines_->setSpacing(0); // the lines keep their own distance
    auto* listLayout = new QVBoxLayout(list);
    style::nest(*listLayout);
    listLayout->addLayout(lines_);
    listLayout->addStretch();
    auto* room = new QScrollArea(this);
    room->setFrameShape(QFrame::NoFrame);
    room->setWidgetResizable(true);
    room->setFocusPolicy(Qt::NoFocus);
    room->setWidget(list);
    beside_ = new QVBoxLayout;
    auto* body = new QHBoxLayout;
    body->setSpacing(2 * style::WideGap);
    body->addWidget(room, 4);
    body->addLayout(beside_, 3); // twelve names of months side by side
    auto* layout = new QVBoxLayout(this);
    style::nest(*layout);
    layout->setSpacing(style::WideGap);
    layout->addWidget(box_);
    layout->addLayout(body, 1);
    layout->addLayout(foot());
}

QLayout* HomePage::foot() {
    state_ = new QLabel(this);
    state_->setObjectName(QStringLiteral("lbljour"));
    style::makeQuiet(*state_);
    tabs_ = new QCheckBox(QStringLiteral("Ouvrir les écrans en &onglets"), this);
    tabs_->setObjectName(QStringLiteral("chkonglets"));
    tabs_->setToolTip(QStringLiteral("Les prochains écrans s'ouvrent dans cette fenêtre, sinon chacun dans la sienne"));
    tabs_->setChecked(form_.desk().habits.value(TabsHabit).toBool());
    connect(tabs_, &QCheckBox::toggled, this, [this](bool wanted) {
        form_.desk().habits.set(TabsHabit, wanted);
        if (tabsWanted) tabsWanted(wanted);
    });
    auto* again =
        form_.button(QStringLiteral("cmdactualiser"), QStringLiteral("Act&ualiser"), [this] { counter_.countAgain(); });
    auto* row = new QHBoxLayout;
    row->addWidget(state_, 1);
    row->addWidget(tabs_);
    row->addWidget(again);
    return row;
}

void HomePage::start() {
    if (tabsWanted) tabsWanted(tabs_->isChecked());
    state_->setText(QStringLiteral("Lecture du dossier…"));
    counter_.start(form_.session());
}

void HomePage::stop() {
    counter_.stop();
    finder_.reset();
    tellWorking(false);
}

void HomePage::search() {
    box_->setFocus(Qt::ShortcutFocusReason);
    box_->selectAll();
}

/// What the player of scenarios waits for.
void HomePage::tellWorking(bool working) { form_.setProperty("working", working); }

QSet<Finding::Kind> HomePage::kindsInReach() const {
    using Kind = Finding::Kind;
    QSet<Kind> reached{Kind::Document};
    for (const Kind kind :
         {Kind::Unit, Kind::Client, Kind::Patient, Kind::Article, Kind::Lot, Kind::Set, Kind::SetType, Kind::Supplier})
        if (may_(openings::entryOf(kind))) reached.insert(kind);
    return reached;
}

QList<Finding> HomePage::find(const QString& typed) {
    QList<Finding> found;
    if (!counter_.isStarted()) return found;
    form_.guarded([&] {
        if (!finder_) finder_ = std::make_unique<FindAnything>(form_.session());
        found = finder_->answers(typed, kindsInReach());
    });
    found.removeIf([this](const Finding& one) { return one.document && !may_(openings::entryOf(*one.document)); });
    return found;
}

void HomePage::showFigures(const std::optional<day_work::Figures>& figures) {
    tellWorking(false);
    state_->setText(figures ? QString() : QStringLiteral("Les chiffres du jour n'ont pas pu être lus"));
    if (!figures) return;
    const QDate today = Clock::today();
    const QWidget* cursor = form_.focusWidget();
    const QString inside = cursor && isAncestorOf(cursor) ? cursor->objectName() : QString();
    empty(*lines_);
    fill(*lines_, QStringLiteral("lblafaire"), QStringLiteral("À faire"), linesToDo(*figures, form_.session(), today));
    fill(*lines_, QStringLiteral("lblrecent"), QStringLiteral("Ces %1 derniers jours").arg(day_work::RecentDays),
         linesOfRecentDays(*figures, today));
    if (lines_->count() == 0) {
        auto* nothing = new QLabel(QStringLiteral("Rien n'attend dans ce dossier."), this);
        nothing->setObjectName(QStringLiteral("lblrien"));
        style::makeQuiet(*nothing);
        lines_->addWidget(nothing);
    }
    showTurnover(*figures, today);
    if (auto* back = inside.isEmpty() ? nullptr : findChild<QWidget*>(inside)) back->setFocus();
}

void HomePage::fill(QVBoxLayout& room, const QString& name, const QString& heading, const QList<DayLine>& lines) {
    QList<DayLine> shown;
    for (const DayLine& line : lines)
        if (may_(line.opening.entry)) shown.append(line);
    if (shown.isEmpty()) return;
    if (room.count() > 0) room.addSpacing(style::WideGap);
    auto* title = new QLabel(heading, this);
    title->setObjectName(name);
    style::makeHeading(*title);
    room.addWidget(title);
    room.addSpacing(style::Gap);
    for (const DayLine& line : shown) {
        auto* made = new WorkLine(line.name, line.tone, line.words, line.details, this);
        connect(made, &QAbstractButton::clicked, this, [this, opening = line.opening] { open_(opening); });
        room.addWidget(made);
    }
}

void HomePage::showTurnover(const day_work::Figures& figures, const QDate& today) {
    const auto isSold = [](const QList<Decimal>& amounts) {
        return std::any_of(amounts.begin(), amounts.end(), [](const Decimal& one) { return one != Decimal(); });
    };
    const bool isShown = may_(TurnoverEntry) && (isSold(figures.turnover) || isSold(figures.turnoverAgo));
    if (!chart_ && isShown) {
        chart_ = new FigureChart(QStringLiteral("Graphique"), this);
        chart_->setMinimumHeight(ChartHeight);
        beside_->addWidget(chart_);
        beside_->addStretch();
    }
    if (!chart_) return;
    chart_->setVisible(isShown);
    QStringList months;
    for (int i = 1 - day_work::MonthsShown; i <= 0; ++i)
        months.append(QLocale().standaloneMonthName(today.addMonths(i).month(), QLocale::ShortFormat));
    std::vector<FigureChart::Series> series{{QStringLiteral("Douze derniers mois"), amountsOf(figures.turnover)}};
    if (isSold(figures.turnoverAgo)) series.push_back({QStringLiteral("Un an avant"), amountsOf(figures.turnoverAgo)});
    chart_->showLines(QStringLiteral("Chiffre d'affaires HT par mois"), months, series);
}

} // namespace molven
