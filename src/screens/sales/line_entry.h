#pragma once

#include "sales/lines.h"
#include "screens/sales/tray_part.h"
#include "ui/code_boxes.h"

class QHBoxLayout;

namespace molven {

struct DocumentLayout;
class Edit;
class Form;
class RecordPanel;

/// The boxes in which one line of a document is added, inserted or changed.
class LineEntry : public TrayPart {
public:
    LineEntry(Form& form, SalesBook& book, const DocumentLayout& layout);

    void startAdding(const Record& header);
    /// Before an existing line.
    void startInserting(const Record& header, const Record& before);
    void startChanging(const Record& header, const Record& line);

    QPushButton* validation() const override;
    QString unsaved() const override;
    void reread(const Record& document) override;
    void focusUnit();

    /// The user wants a range of units of this article, from this immatriculation on.
    std::function<void(const QString& reference, const QString& first)> rangeWanted;

private:
    enum class Purpose { Add, Insert, Change };

    void build();
    void addDiscounts(QHBoxLayout& row);
    void setPickers();
    void pickUnit();
    void pickReimbursement();
    void start(Purpose purpose, const Record& header);
    void show();
    void adaptBoxes();
    bool isUnit(const QString& typed);
    void takeArticle();
    void takeUnit();
    void takeAmounts();
    void validate();
    void changeLine();
    void askRange();
    /// Null where the kind has no such box, and nothing typed.
    Edit* box(const Field& field) const;
    QString typed(const Field& field) const;
    /// The line number typed for an added line, 0 for the one proposed.
    int typedNumber() const;
    QString proposedNumber() const;
    void takeReimbursement();
    void fillFrom(const Record& line);
    /// The line that the user chose as it is stored now, wherever it was moved.
    std::optional<Record> chosenNow() const;

    Form& form_;
    SalesBook& book_;
    const DocumentLines& table_;
    const DocumentLayout& layout_;
    std::optional<CodeBoxes> codes_;
    RecordPanel* panel_ = nullptr;
    Edit* clientDiscount_ = nullptr;
    Edit* articleDiscount_ = nullptr;
    QPushButton* validate_ = nullptr;
    QPushButton* validateChange_ = nullptr;
    QPushButton* range_ = nullptr;
    Purpose purpose_ = Purpose::Add;
    std::optional<Record> header_;
    document_lines::Draft draft_;
    Record shown_;                 ///< a line being changed, as the boxes were filled from it
    std::optional<Record> chosen_; ///< line inserted before or changed, as the user saw it
    QString preset_;               ///< line number proposed
};

} // namespace molven
