#pragma once

#include "sales/lines.h"

#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;

namespace molven {

class Edit;
class Form;
class RecordPanel;

/// The boxes in which one line of a document is added, inserted or changed.
class LineEntry : public QWidget {
public:
    LineEntry(Form& form, SalesBook& book);

    void startAdding(const Record& header);
    /// Before an existing line.
    void startInserting(const Record& header, const Record& before);
    void startChanging(const Record& header, const Record& line);

    std::function<void()> written;  ///< the document's lines changed
    std::function<void()> finished; ///< the user leaves line entry
    /// The user wants a range of units of this article, from this immatriculation on.
    std::function<void(const QString& reference, const QString& first)> rangeWanted;

private:
    enum class Purpose { Add, Insert, Change };

    void build();
    void setPickers();
    void start(Purpose purpose, const Record& header);
    void show();
    void adaptBoxes();
    void takeArticle();
    void takeUnit();
    void takeAmounts();
    void validate();
    void changeLine();
    void askRange();
    Edit* box(const Field& field) const;
    QString typed(const Field& field) const;

    Form& form_;
    SalesBook& book_;
    const DocumentLines& table_;
    RecordPanel* panel_ = nullptr;
    Edit* clientDiscount_ = nullptr;
    Edit* articleDiscount_ = nullptr;
    QPushButton* validate_ = nullptr;
    QPushButton* validateChange_ = nullptr;
    QPushButton* range_ = nullptr;
    Purpose purpose_ = Purpose::Add;
    std::optional<Record> header_;
    document_lines::Draft draft_;
    std::optional<Record> chosen_; ///< line inserted before or changed, as the user saw it
    QString preset_;               ///< line number proposed
};

} // namespace molven
