#include "ui/figure_chart.h"

#include "ui/style.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QEvent>
#include <QHorizontalBarSeries>
#include <QLegend>
#include <QLineSeries>
#include <QValueAxis>

#include <algorithm>

namespace molven {

namespace {

constexpr int LongestName = 22;
constexpr double LineWidth = 2, Finest = 2; ///< pixels; how much finer the picture for paper is
constexpr double SmallType = 0.85;          ///< of the window's
constexpr int Margin = 4;

QString shortened(const QString& name) { return name.size() <= LongestName ? name : name.left(LongestName - 1) + u'…'; }

} // namespace

FigureChart::FigureChart(const QString& name, QWidget* parent) : QChartView(new QChart, parent) {
    setObjectName(name);
    setFocusPolicy(Qt::NoFocus);
    setRenderHint(QPainter::Antialiasing);
    setFrameShape(QFrame::NoFrame);
    chart()->setBackgroundRoundness(0);
    chart()->setMargins({Margin, Margin, Margin, Margin});
    chart()->legend()->setAlignment(Qt::AlignBottom);
    wearColours();
}

void FigureChart::changeEvent(QEvent* event) {
    QChartView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) wearColours();
}

/// Those of the program, also before there are figures and when the system turns dark or light meanwhile.
void FigureChart::wearColours() {
    chart()->setTitleBrush(palette().text());
    chart()->setBackgroundBrush(palette().base());
    chart()->legend()->setLabelColor(palette().color(QPalette::Text));
    for (QAbstractAxis* axis : chart()->axes()) {
        axis->setLabelsColor(palette().color(QPalette::Text));
        axis->setGridLineColor(palette().color(QPalette::Mid));
        axis->setLinePenColor(palette().color(QPalette::Mid));
    }
    std::size_t at = 0;
    for (QAbstractSeries* drawn : chart()->series()) {
        if (auto* line = qobject_cast<QLineSeries*>(drawn)) line->setPen(QPen(colourOf(at++), LineWidth));
        if (auto* bars = qobject_cast<QHorizontalBarSeries*>(drawn)) {
            QList<QBarSet*> sets = bars->barSets();
            std::reverse(sets.begin(), sets.end()); // as they were added
            for (QBarSet* set : sets) {
                set->setColor(colourOf(at));
                set->setBorderColor(colourOf(at++));
            }
        }
    }
}

QColor FigureChart::colourOf(std::size_t series) const {
    return series == 0 ? palette().color(QPalette::Link) : style::colour(style::Tone::Quiet);
}

void FigureChart::begin(const QString& title, const std::vector<Series>& series) {
    chart()->removeAllSeries();
    for (QAbstractAxis* axis : chart()->axes()) {
        chart()->removeAxis(axis);
        delete axis;
    }
    chart()->setTitle(title);
    chart()->legend()->setVisible(series.size() > 1);
}

void FigureChart::addAxes(QAbstractSeries& drawn, const QStringList& names, bool areNamesUpright) {
    auto* categories = new QBarCategoryAxis;
    categories->append(names);
    categories->setTruncateLabels(areNamesUpright); // names below are short, and cut long before they touch
    auto* amounts = new QValueAxis;
    amounts->setLabelFormat(QStringLiteral("%.0f"));
    amounts->setTickCount(4);
    chart()->addAxis(categories, areNamesUpright ? Qt::AlignLeft : Qt::AlignBottom);
    chart()->addAxis(amounts, areNamesUpright ? Qt::AlignBottom : Qt::AlignLeft);
    auto small = font();
    small.setPointSizeF(small.pointSizeF() * SmallType);
    chart()->legend()->setFont(small);
    for (QAbstractAxis* axis : {static_cast<QAbstractAxis*>(categories), static_cast<QAbstractAxis*>(amounts)}) {
        axis->setLabelsFont(small);
        drawn.attachAxis(axis);
    }
}

/// Two names that look the same when shortened are two bars all the same.
static QStringList distinct(const QStringList& names) {
    QStringList made;
    for (const QString& name : names) {
        QString one = shortened(name);
        while (made.contains(one)) one += u' ';
        made.append(one);
    }
    return made;
}

void FigureChart::showBars(const QString& title, const QStringList& names, const std::vector<Series>& series) {
    begin(title, series);
    auto* bars = new QHorizontalBarSeries;
    // The engine of the chart counts from below.
    for (std::size_t i = series.size(); i-- > 0;) {
        auto* set = new QBarSet(series[i].name);
        for (auto amount = series[i].amounts.rbegin(); amount != series[i].amounts.rend(); ++amount)
            set->append(*amount);
        bars->append(set);
    }
    chart()->addSeries(bars);
    QStringList upwards = distinct(names);
    std::reverse(upwards.begin(), upwards.end());
    chart()->legend()->setReverseMarkers(true);
    addAxes(*bars, upwards, true);
    roundAxis(series);
    wearColours();
}

/// Marks of round amounts, zero among them.
void FigureChart::roundAxis(const std::vector<Series>& series) {
    double least = 0, most = 1;
    for (const Series& one : series)
        for (const double amount : one.amounts) {
            least = std::min(least, amount);
            most = std::max(most, amount);
        }
    for (QAbstractAxis* axis : chart()->axes()) {
        if (auto* amounts = dynamic_cast<QValueAxis*>(axis)) {
            amounts->setRange(least, most);
            amounts->applyNiceNumbers();
        }
    }
}

void FigureChart::showLines(const QString& title, const QStringList& names, const std::vector<Series>& series) {
    begin(title, series);
    chart()->legend()->setReverseMarkers(false);
    for (std::size_t i = 0; i < series.size(); ++i) {
        auto* line = new QLineSeries;
        line->setName(series[i].name);
        line->setPointsVisible(true);
        for (std::size_t at = 0; at < series[i].amounts.size(); ++at)
            line->append(static_cast<double>(at), series[i].amounts[at]);
        chart()->addSeries(line);
        if (i == 0) {
            addAxes(*line, distinct(names), false);
            continue;
        }
        for (QAbstractAxis* axis : chart()->axes()) line->attachAxis(axis);
    }
    roundAxis(series);
    wearColours();
}

QImage FigureChart::picture() {
    QImage image(size() * Finest, QImage::Format_RGB32);
    image.fill(palette().color(QPalette::Base));
    QPainter painter(&image);
    render(&painter);
    return image;
}

} // namespace molven
