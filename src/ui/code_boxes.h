#pragma once

#include "data/code_kind.h"
#include "data/database.h"
#include "ui/pick_panel.h"

#include <QHash>

#include <functional>

namespace molven {

class Form;
class RecordPanel;

/// The code boxes of a panel, by the kinds of their fields: a code typed short is completed on leaving, its words stand
/// beside it, F2 opens its list, and what may be meant is offered below it while it is typed. Boxes whose kind lies in
/// none of the files are left alone.
class CodeBoxes {
public:
    /// The panel and the files outlive it.
    CodeBoxes(Form& form, RecordPanel& panel, const QHash<DataFile, Database>& files);

    /// Value of a field that has no box here and on which the kind of another depends.
    std::function<QString(const Text& field)> valueOf = [](const Text&) { return QString(); };
    /// Takes over the leaving of the boxes and their lists; `changed` is run when one was left or chosen for. What a
    /// scanner may have typed is left as it is, for `changed` to take.
    void wire(const std::function<void(const Field&)>& changed);
    /// Another list behind a box than its kind's; it opens while the box is open.
    void list(const Field& field, const std::function<PickList()>& makeList);
    /// Puts what a list gave into a box, which is left then as if it had been typed.
    std::function<void(const Record&)> put(const Field& field, const Field& from);
    /// Leaving these boxes also refuses a code that they may not hold; the others are refused when the record is
    /// written.
    void refuseOnLeaving(const QList<const Field*>& fields) { refusing_ = fields; }

    /// The words beside all boxes.
    void showWords();

private:
    void offer();
    void take(const Field& field, const QString& code);
    /// What a code box is worked with; nothing where the record gives the field no kind.
    struct Box {
        const CodeKind& kind;
        Database file;
    };
    std::optional<Box> boxOf(const Field& field) const;
    void leave(const Field& field);
    void openList(const Field& field);

    Form& form_;
    RecordPanel& panel_;
    QHash<DataFile, Database> files_;
    QList<const Field*> refusing_;
    std::function<void(const Field&)> changed_;
};

} // namespace molven
