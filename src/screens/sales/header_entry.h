#pragma once

#include "sales/sales_book.h"
#include "ui/code_boxes.h"

#include <QWidget>

#include <functional>

class QLabel;

namespace molven {

class Form;
class RecordPanel;

/// The header of a sales document: its boxes, the client's addresses and memo, the words beside the codes.
class HeaderEntry : public QWidget {
public:
    HeaderEntry(Form& form, SalesBook& book);

    enum class Open {
        Search, ///< a number, or the client whose documents are wanted
        Number, ///< another number, while a document is shown
        New,    ///< a whole header
        Kept    ///< what stays open to change on a document
    };
    void setOpen(Open open);

    /// An empty header of today in the company's currency, for the client already typed if there is one.
    void startNew(const QString& client);
    void show(const std::optional<Record>& document);
    /// Shows a document read anew; what the user changed meanwhile stays in its box.
    void reread(const Record& document);

    /// True when the user typed what would be lost.
    bool isTyped() const;
    QString number() const;
    QString client() const;
    /// The document as the boxes were filled from it.
    const Record& asRead() const { return shown_; }
    /// Puts the number of the shown document back; false when it stands there already.
    bool restoreNumber();

    /// The new header as typed. Throws Refusal for a client that may not have one.
    Record entered();
    QStringList deliveryAddress() const;
    /// The shown document with what the user changed.
    Record changed() const;

    void focusFirst();
    void focusNumber();
    /// Boxes in the order of the keyboard, then what validates.
    void setTabOrderBefore(QWidget* validation);

    std::function<void()> numberTyped; ///< a number was typed to be shown

private:
    void build();
    void setPickers();
    void setChecks();
    void takeClient();
    void searchClient();
    void load(const Record& header, const Record& address);
    void setCurrency(Record& header, const QString& currency);
    void showEuro();
    void showWords();
    QString typed(const Field& field) const;

    Form& form_;
    SalesBook& book_;
    const DocumentHeaders& table_;
    Open open_ = Open::Search;
    Record shown_;         ///< what the boxes showed before the user typed
    Record preset_;        ///< what a new header was preset with
    Record presetAddress_; ///< and its delivery address
    std::optional<CodeBoxes> codes_;
    RecordPanel* boxes_ = nullptr;
    RecordPanel* address_ = nullptr;
    QLabel* invoiced_ = nullptr;
    QLabel* memo_ = nullptr;
};

} // namespace molven
