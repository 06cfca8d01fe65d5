#pragma once

#include "data/record.h"
#include "ui/edit.h"

#include <QHash>
#include <QWidget>

class QAbstractButton;
class QGridLayout;
class QHBoxLayout;
class QLabel;

namespace molven {

/// One entry box for one field.
struct FieldBox {
    const Field* field;
    QString caption;
    QString control = {}; ///< object name; "txt" and the field's name when empty
    int characters = 0;   ///< width of the box; the field's own size when 0
    QString pattern = {}; ///< how a number is shown
    bool isDate = false;
    bool readOnly = false;
    QString listButton = {}; ///< object name of the button that opens the list behind the box; none when empty
    int longest = 0;         ///< characters that may be typed; the field's own size when 0
    bool beside = false;     ///< stands on the line of the box before it, without words of its own
};

/// Boxes that belong together, under a name: above them, or before the first one when that has no caption of its own.
struct BoxGroup {
    QString title;
    QList<FieldBox> boxes;
};

/// Captioned boxes over the fields of a record, in columns, in the order in which a user reads them. A group stands
/// whole in one column.
class RecordPanel : public QWidget {
public:
    RecordPanel(const QList<BoxGroup>& groups, int columns, QWidget* parent);
    /// Boxes that need no groups: they fill the columns evenly.
    RecordPanel(const QList<FieldBox>& boxes, int columns, QWidget* parent);

    Edit* edit(const Field& field) const;
    /// The button of the list behind a box, or null.
    QAbstractButton* listButton(const Field& field) const;
    /// The words shown beside a code box: the label behind the code, or "inconnu".
    void setHint(const Field& field, const QString& text);
    void setCaption(const Field& field, const QString& caption);
    /// Marks the boxes that must not stay empty.
    void markRequired(const QList<const Field*>& fields);
    void load(const Record& record);
    /// The number that a box holds: the record's own, to its last decimal, while the box shows it unchanged. Throws
    /// Refusal.
    Decimal number(const Number& field, const Record& loaded) const;
    /// Puts into the record what the boxes show otherwise than it does: a figure shown rounded and not touched keeps
    /// every digit. Throws Refusal for a number that is not one.
    void store(Record& record) const;
    /// True when what is typed is not what this record shows; an unreadable number is a change too.
    bool differsFrom(const Record& record) const;
    /// After another workstation wrote the record shown: says which of its values the boxes show changed, one line a
    /// value, and shows them without losing what is typed.
    QString changesOf(const Record& shown, const Record& fresh) const;
    void reread(const Record& shown, const Record& fresh);
    /// Boxes that are not read-only by nature.
    void setEditable(bool editable);
    /// These boxes only.
    void setEditableOnly(const QList<const Field*>& fields);
    const QList<FieldBox>& boxes() const { return boxes_; }

private:
    void add(const BoxGroup& group, QGridLayout& layout, int column, int& row);
    void add(const FieldBox& box, QGridLayout& layout, int column, int row, QLabel* caption);
    QHBoxLayout* lineOf(const FieldBox& box, Edit* edit);
    QAbstractButton* listButtonOf(const FieldBox& box);
    void open(const FieldBox& box, bool editable);
    bool isChanged(const FieldBox& box, const Record& record) const;

    QList<FieldBox> boxes_;
    QHash<const Field*, Edit*> edits_;
    QHash<const Field*, QLabel*> captions_;
    QHash<const Field*, QLabel*> hints_;
    QHash<const Field*, QAbstractButton*> listButtons_;
    QHBoxLayout* line_ = nullptr; ///< of the box added last
};

} // namespace molven
