#pragma once

#include "screens/shell/day_counter.h"
#include "screens/shell/day_lines.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QVBoxLayout;

namespace molven {

class FigureChart;
class Form;
class SearchBox;

/// What the main window shows of the open dossier: the search for everything, the day's work, the turnover.
class HomePage : public QWidget {
public:
    /// `may` answers whether the user may choose a menu entry, `open` opens one filled in.
    HomePage(Form& form, const std::function<bool(const QString&)>& may,
             const std::function<void(const Opening&)>& open);

    /// The dossier's files are read from now on.
    void start();
    /// And from here on no more.
    void stop();
    void search();
    void countAgain() { counter_.countAgain(); }
    /// Reads the figures again if the dossier was written to.
    void look() { counter_.look(); }

    std::function<void(bool)> tabsWanted; ///< the user chose where screens open

private:
    QLayout* foot();
    QList<Finding> find(const QString& typed);
    QSet<Finding::Kind> kindsInReach() const;
    void showFigures(const std::optional<day_work::Figures>& figures);
    void fill(QVBoxLayout& room, const QString& name, const QString& heading, const QList<DayLine>& lines);
    void showTurnover(const day_work::Figures& figures, const QDate& today);
    void tellWorking(bool working);

    Form& form_;
    const std::function<bool(const QString&)> may_;
    const std::function<void(const Opening&)> open_;
    DayCounter counter_;
    std::unique_ptr<FindAnything> finder_; ///< opened at the first word searched for
    SearchBox* box_;
    QVBoxLayout* lines_;
    QVBoxLayout* beside_;
    QLabel* state_;
    QCheckBox* tabs_;
    FigureChart* chart_ = nullptr; ///< made when there is a turnover to show
};

} // namespace molven
