#pragma once

#include "ui/code_boxes.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/opened_on.h"
#include "ui/pick_panel.h"
#include "ui/record_panel.h"
#include "ui/record_state.h"

class QHBoxLayout;
class QVBoxLayout;

namespace molven {

/// A file of records kept one at a time: the list on the left, the record on the right, add, modify, delete,
/// validate, abandon. A code typed in the key box brings its record up. The subclass says what the record is.
class RecordForm : public Form, public OpenedOn {
public:
    using State = RecordState::State;

    void bringUp(const QString& code) override;

protected:
    /// What is on the screen and how the user meets it.
    struct Description {
        QString title;
        QList<GridColumn> list; ///< columns of DBGrid1
        RecordModel::Query query;
        QList<BoxGroup> boxes;
        int columns = 2;                      ///< of boxes
        const Text& key;                      ///< the code a record is found by
        QString unknown;                      ///< said when the code typed has no record
        QString noneChosen;                   ///< said when a button needs a record on the screen
        QHash<DataFile, Database> files = {}; ///< where the codes of the boxes are looked up
        QList<const Field*> required = {};    ///< besides the key, must not stay empty
    };

    RecordForm(Desk& desk, const QString& name);
    /// Builds the screen; called once by the subclass.
    void build(const Description& description);

    // The subclass's record
    virtual Record blank() = 0;
    virtual std::optional<Record> find(const QString& key) = 0;
    /// Writes what is on the screen; `before` is the record as it was brought up, nothing for a new one. Throws
    /// Refusal.
    virtual void write(const Record& record, const std::optional<Record>& before) = 0;
    virtual void erase(const Record& record) = 0;
    /// Another record came up, or its change begins: further boxes are filled, opened or closed.
    virtual void stateChanged() {}
    /// A code changed, the words beside the codes stand: what else follows from the codes.
    virtual void shown() {}
    /// Boxes of the subclass's own hold something that the record does not.
    virtual bool hasFurtherChanges() const { return false; }
    /// What a deletion is about, for its question: "Client 000007, CLINIQUE DU PARC".
    virtual QString nameOf(const Record& record) const = 0;

    State state() const { return entry_.state(); }
    RecordPanel& panel() { return *panel_; }
    /// The record as it stands in the boxes, over the one brought up.
    Record typed() const;
    const std::optional<Record>& record() const { return entry_.record(); }
    void show(const Record& record);
    QString typedCode(const Field& field) const { return panel_->edit(field)->value().trimmed(); }
    CodeBoxes& codeBoxes() { return *codes_; }
    /// Another list behind a code box than its kind's, while the record is changed.
    void picker(const Field& field, const std::function<PickList()>& list) { codes_->list(field, list); }
    /// The list behind the key box, while records are looked at.
    void keyPicker(const std::function<PickList(const std::function<void(const Record&)>&)>& list);
    /// Puts what a list gave into a box.
    std::function<void(const Record&)> put(const Field& field, const Field& from) { return codes_->put(field, from); }
    /// The record brought up; throws Refusal when there is none.
    const Record& requireRecord() const;
    /// Where a subclass puts its own buttons and boxes.
    QHBoxLayout* extraButtons() { return extraButtons_; }
    QVBoxLayout* extraRows() { return extraRows_; }
    QVBoxLayout* underList() { return underList_; }

    bool hasUnsavedWork() const override { return entry_.hasUnsavedWork(); }

private:
    QLayout* buttonRow();
    void bringUp(const Record& row);
    void adapt();
    void showWords();
    void lookUp();
    void startAdding();
    void startChanging();
    void validate();
    void abandon();
    void removeRecord();
    void clearScreen();

    std::optional<Description> description_;
    RecordState entry_;
    Grid* list_ = nullptr;
    RecordPanel* panel_ = nullptr;
    std::optional<CodeBoxes> codes_;
    QHBoxLayout* extraButtons_ = nullptr;
    QVBoxLayout* extraRows_ = nullptr;
    QVBoxLayout* underList_ = nullptr;
};

} // namespace molven
