#pragma once

#include "reference/code_tables.h"
#include "ui/code_boxes.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/opened_on.h"
#include "ui/record_panel.h"
#include "ui/record_state.h"

class QHBoxLayout;
class QLabel;

namespace molven {

namespace references {
class Files;
} // namespace references

/// What one small code table shows.
struct CodeTableView {
    QString title;   ///< of the window
    QString caption; ///< over the list
    const CodeTable& kind;
    Database database;
    QList<GridColumn> columns;
    QList<FieldBox> boxes;
    Order order;
    Criterion criterion = {};             ///< the records of the table that this screen keeps
    QList<Assignment> preset = {};        ///< what a new record holds from the start
    bool hasFixedRows = false;            ///< records are changed only, never added nor deleted
    QHash<DataFile, Database> files = {}; ///< where the codes of the boxes are looked up
    bool validatesChanges = false;        ///< "Valider" writes a change, too
    /// What stands at the right of list and boxes; made once those are.
    std::function<QWidget*()> beside = {};
};

/// A small code table: the list above, the boxes of one record below. A row clicked or a code typed brings its record
/// up; it is changed, deleted, or a new one is added; the list is printed.
class CodeTableForm : public Form, public OpenedOn {
public:
    /// By the last part of its key.
    void bringUp(const QString& code) override;

protected:
    CodeTableForm(Desk& desk, const QString& name);
    /// Builds the screen; called once by the subclass.
    void build(const CodeTableView& view);
    QPushButton* validation() const override { return entry_.isEntering() ? validate_ : change_; }

    /// The codes on the screen changed, the words beside them stand: what else follows from them.
    virtual void shown() {}
    /// Writes a record, a new one when there is nothing before; a subclass may write more with it, in one transaction.
    virtual void save(const Record& record, const std::optional<Record>& before);
    /// Deletes a record; a subclass may delete what is part of it, in the caller's transaction.
    virtual void erase(references::Files& files, const Record& record);
    /// Prints the list.
    virtual void print();
    /// Order of the printed list; the list's own when nothing is answered.
    virtual std::optional<Order> printOrder() { return std::nullopt; }

    RecordPanel& panel() { return *panel_; }
    QString typed(const Field& field) const { return panel_->edit(field)->value().trimmed(); }
    /// Puts what a list gave into a box.
    std::function<void(const Record&)> put(const Field& field, const Field& from) { return codes_->put(field, from); }
    /// Another list behind a code box than its kind's.
    void picker(const Field& field, const std::function<PickList()>& list) { codes_->list(field, list); }
    QHBoxLayout* extraButtons() { return extraButtons_; }
    /// Gives up what is typed, reads the list again and shows the record again.
    void refresh();
    /// Reads the list again under the record shown and what is typed.
    void rereadList();
    /// The record on the screen as it was read; blank while one is added.
    const Record& record() const { return shownRecord(); }
    bool isAdding() const { return entry_.isEntering(); }

    bool hasUnsavedWork() const override { return entry_.hasUnsavedWork(); }

private:
    QLayout* body(QLabel* caption);
    QLayout* buttonRow();
    Record typedKeyRecord() const;
    void left(const Field& field);
    void showWords();
    Criterion typedKey() const;
    bool isKeyTyped() const;
    QString nameOf(const Record& record) const;
    QList<const Field*> keyFields() const;
    void completeKey();
    void lookUp();
    void bringUp(const Record& row);
    void show(const Record& record);
    void showRow(int row);
    void startAdding();
    void write();
    bool changed(const Record& record);
    void remove();
    void endEntry();
    void adapt();
    const Record& shownRecord() const { return *entry_.record(); }
    Record blank() const;

    std::optional<CodeTableView> view_;
    Grid* grid_ = nullptr;
    RecordPanel* panel_ = nullptr;
    std::optional<CodeBoxes> codes_;
    QHBoxLayout* extraButtons_ = nullptr;
    QPushButton* change_ = nullptr;
    QPushButton* validate_ = nullptr;
    QPushButton* abandon_ = nullptr;
    RecordState entry_;
};

} // namespace molven
