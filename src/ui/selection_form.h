#pragma once

#include "data/database.h"
#include "ui/criteria_panel.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/pick_lists.h"

class QHBoxLayout;
class QLabel;

namespace molven {

/// What is done with a selection, by its button.
struct SelectionDeed {
    QString button; ///< object name
    QString caption;
    std::function<void()> run;
};

/// What a selection asks for, shows, and does with what it found.
struct Selection {
    QString title;                ///< of the window
    QList<CriterionBox> criteria; ///< the cursor begins in the first
    int across = 4;               ///< criteria a row
    QList<GridColumn> list;       ///< columns of DBGrid1
    QList<SelectionDeed> searches;
    QList<SelectionDeed> deeds;           ///< with what was found; leaving is added
    QHash<DataFile, Database> files = {}; ///< where the codes of the criteria are looked up
    QString words = {};                   ///< name of the line that says what was asked; none when empty
    QString count = QStringLiteral("Label2");
    QSize size = {1240, 740};
};

/// Criteria, then what they select in a grid, then what is done with it. Return searches where there is one search. A
/// code is chosen, completed and offered by its kind.
class SelectionForm : public Form {
public:
    /// Asks for these criteria, by name, and for nothing else, and searches; of a list, the option's caption.
    void ask(const QHash<QString, QString>& values);

protected:
    SelectionForm(Desk& desk, const QString& name) : Form(desk, name) {}
    /// Builds the screen; called once by the subclass.
    void build(const Selection& selection);

    CriteriaPanel& criteria() { return *criteria_; }
    const CriteriaPanel& criteria() const { return *criteria_; }
    Grid& list() { return *list_; }
    /// Another list behind a criterion than its kind's, or one behind a criterion without.
    void picker(const QString& box, const Field& field, const std::function<PickList(const pick_lists::Chosen&)>& list);
    /// Where further labels stand, between the searches and the deeds.
    QHBoxLayout* row() { return row_; }

    /// What was selected before is gone; the search that begins now says what it asks for.
    void clearSelection(const QString& words = {});
    /// Shows what was found and how many, in words of its own where they are given. The user goes on in the list.
    void showRows(const RecordModel::Query& query, const QString& count = {});
    void showRows(const QList<Record>& records, const QString& count = {});
    void showCount(const QString& count);
    QString words() const;
    /// Throws Refusal "Faire une sélection" while nothing is selected.
    void requireSelection() const;

private:
    void wireCode(const CriterionBox& box, const QHash<DataFile, Database>& files);
    void selected(const QString& count);
    QPushButton* deed(const SelectionDeed& deed) { return button(deed.button, deed.caption, deed.run); }

    QString first_; ///< name of the first criterion
    CriteriaPanel* criteria_ = nullptr;
    Grid* list_ = nullptr;
    QLabel* words_ = nullptr;
    QLabel* count_ = nullptr;
    QHBoxLayout* row_ = nullptr;
    QPushButton* search_ = nullptr; ///< the only one, or the last
    bool isSelected_ = false;
};

} // namespace molven
