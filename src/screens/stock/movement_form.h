#pragma once

#include "stock/movements.h"
#include "ui/code_boxes.h"
#include "ui/form.h"
#include "ui/record_panel.h"

class QLabel;

namespace molven {

class Grid;

/// Movements of the articles kept by quantity: all of them, or those of one article, above; one of them below, added,
/// changed, deleted.
class MovementForm : public Form {
public:
    explicit MovementForm(Desk& desk);

    /// Lists the movements of an article, unless the user keeps what he is typing.
    void showArticle(const QString& reference);

protected:
    bool hasUnsavedWork() const override;

private:
    enum class State { Viewing, Adding, Changing };

    void buildPanel();
    QLayout* buttonRow();
    void setState(State state);
    void leave(const Field& field);
    void referenceLeft();
    void list(const QString& reference);
    void bringUp(const Record& movement);
    void showWords();
    void startAdding();
    void startChanging();
    void validate();
    void change(const Record& movement);
    void abandon();
    void removeMovement();
    const Record& requireMovement() const;
    QString typed(const Field& field) const { return panel_->edit(field)->value().trimmed(); }

    Workspace workspace_;
    MovementFiles files_;
    Grid* grid_;
    RecordPanel* panel_;
    std::optional<CodeBoxes> codes_;
    QLabel* stock_;
    QPushButton *add_, *change_, *remove_, *validate_, *abandon_;
    State state_ = State::Viewing;
    QString listed_;                 ///< article whose movements are listed; empty for all
    Record shown_{strmvtstk};        ///< what the boxes began with
    std::optional<Record> movement_; ///< the one of the list that stands in them
};

} // namespace molven
