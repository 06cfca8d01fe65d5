#pragma once

#include "sales/sales_book.h"
#include "ui/code_boxes.h"

#include <QWidget>

#include <functional>

class QLabel;

namespace molven {

struct DocumentLayout;
class Form;
class RecordPanel;

/// The header of a sales document: its boxes, the client's addresses and memo, the words beside the codes.
class HeaderEntry : public QWidget {
public:
    HeaderEntry(Form& form, SalesBook& book, const DocumentLayout& layout);

    enum class Open {
        Search, ///< a number, or the client whose documents are wanted
        Number, ///< another number, while a document is shown
        New,    ///< a whole header
        Kept    ///< what stays open to change on a document
    };
    void setOpen(Open open);

    /// What a new header holds for a client. Throws Refusal for one that may not have it.
    using Preset = std::function<Record(const QString& client)>;
    /// Opens a new header of today, for the client already typed if there is one; these fields stay as preset.
    void startNew(const QString& client, const Preset& preset, const QList<const Field*>& fixed = {});
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
    /// The address typed (`strbl`).
    Record deliveryAddress() const;
    /// The shown document with what the user changed.
    Record changed() const;

    void focusFirst();
    void focusNumber();
    /// Boxes in the order of the keyboard, then what validates.
    void setTabOrderBefore(QWidget* validation);

    std::function<void()> numberTyped; ///< a number was typed to be shown

private:
    void build();
    void wire();
    void takeClient();
    void searchClient();
    void load(const Record& header, const Record& address);
    void showEuro();
    void showWords();
    QList<const Field*> fieldsOfNew() const;
    QString typed(const Field& field) const;

    Form& form_;
    SalesBook& book_;
    const DocumentHeaders& table_;
    const DocumentLayout& layout_;
    Open open_ = Open::Search;
    Record shown_;         ///< what the boxes showed before the user typed
    Record preset_;        ///< what a new header was preset with
    Record presetAddress_; ///< and its delivery address
    Preset presetFor_;
    QList<const Field*> fixed_;
    RecordPanel* boxes_ = nullptr;
    RecordPanel* address_ = nullptr;
    std::optional<CodeBoxes> codes_;
    QLabel* invoiced_ = nullptr;
    QLabel* memo_ = nullptr;
};

} // namespace molven
