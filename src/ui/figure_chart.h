#pragma once

#include <QChartView>
#include <QImage>
#include <QStringList>

#include <vector>

namespace molven {

/// A chart of amounts beside the list that they stand in, for the eye only: the list says the same in words.
class FigureChart : public QChartView {
public:
    struct Series {
        QString name;
        std::vector<double> amounts; ///< one for each of the chart's names
    };

    FigureChart(const QString& name, QWidget* parent);

    /// One bar a name, the first on top; several series stand side by side.
    void showBars(const QString& title, const QStringList& names, const std::vector<Series>& series);
    /// One point a name, joined.
    void showLines(const QString& title, const QStringList& names, const std::vector<Series>& series);
    /// As it stands, for paper.
    QImage picture();

protected:
    void changeEvent(QEvent* event) override;

private:
    void wearColours();
    void begin(const QString& title, const std::vector<Series>& series);
    void roundAxis(const std::vector<Series>& series);
    void addAxes(QAbstractSeries& drawn, const QStringList& names, bool areNamesUpright);
    QColor colourOf(std::size_t series) const;
};

} // namespace molven
