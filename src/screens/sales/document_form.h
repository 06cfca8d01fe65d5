#pragma once

#include "sales/sales_book.h"
#include "screens/sales/document_layout.h"
#include "ui/form.h"
#include "ui/opened_on.h"
#include "ui/record_state.h"

class QLabel;
class QStackedWidget;

namespace molven {

class FooterEntry;
class Grid;
class HeaderEntry;
class LineEntry;
class NoteChoice;
class ScanEntry;
class TrayPart;
class UnitRange;

/// Entry of one kind of document. The mode word chooses the kind; its layout says which parts the screen is made of.
class DocumentForm : public Form, public OpenedOn {
public:
    /// Of the sales kind that the mode word names.
    explicit DocumentForm(Desk& desk);
    DocumentForm(Desk& desk, const DocumentKind& kind);
    void bringUp(const QString& number) override;
    /// Lists documents of any client that meet a condition, the oldest first; the chosen one is shown.
    void offer(const QString& title, const Criterion& criterion);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool mayClose() override;

private:
    using Part = DocumentLayout::Part;
    using State = RecordState::State;
    using Acts = RecordState::Acts;

    // Building, in document_form.cpp.
    QLayout* buildDocumentButtons();
    QLayout* buildLineButtons();
    void buildTray();
    void addToTray(TrayPart* part);
    using Form::show;
    /// The button of a part, out of sight where the kind has no such part.
    void show(Part part, QPushButton* button);
    void orderKeyboard(const QLayout& deeds, const QLayout& lineDeeds);
    /// Opens and closes what the state of the document opens and closes.
    void adapt();

    // The document and its header, in document_steps.cpp.
    void startNew();
    void validateHeader();
    void startChanging();
    void abandon();
    void removeDocument();
    void display(const std::optional<Record>& document);
    void leafTo(const std::optional<Record>& document);
    void displayTyped();
    /// Throws Refusal "N° inconnu".
    Record numbered(const QString& number);
    void pickDocument();
    void offer(const QString& title, const QList<GridColumn>& columns, const Criterion& criterion);
    void print();
    void readAgain();
    void refresh();
    QString totalWords() const;
    /// A button whose deed may meet what another workstation did meanwhile.
    QPushButton* deed(const QString& name, const QString& caption, const std::function<void()>& handler);
    void attempt(const std::function<void()>& deed);
    void reread();
    std::optional<Record> stored();
    void offerUnfinished();
    /// Asks about a document left empty or without amount; false when a fault kept it open.
    bool closeDocument();
    /// The question that closing the document would put, or the news that it is dropped; empty when none.
    QString closingQuestion();
    /// False when the user keeps a header being typed.
    bool mayLeaveHeader();
    void leaveInnermost();
    const Record& requireDocument() const;
    const std::optional<Record>& shown() const { return entry_.record(); }
    /// The document in words, for questions that destroy.
    QString about(const Record& document) const;

    // What carries a document on in another, in document_renewal.cpp.
    void startRenewal();
    void deliverProforma();

    // What opens below the lines, in document_tray.cpp.
    void showTray(TrayPart* part);
    /// Shows a part and starts it, unless the user keeps what is typed in another.
    void openTray(TrayPart* part, const std::function<void()>& start);
    void leaveTray();
    TrayPart* trayPart() const;
    /// False when the user keeps what is typed there.
    bool mayLeaveTray();
    void addLine();
    void insertLine();
    void changeLine();
    void removeLine();
    void openScans();
    void addRange(const QStringList& units);
    void openIntegration();
    void openFooter();
    Record requireLine() const;

    const DocumentLayout layout_;
    SalesBook book_;
    const DocumentHeaders& table_;
    RecordState entry_;       ///< of the document shown
    QList<Record> linesRead_; ///< as they stand on the screen
    bool touched_ = false;    ///< created or changed since it was brought up
    /// The note that the one being entered renews, and the units that go on.
    struct Renewal {
        Record note;
        QStringList units;
    };
    std::optional<Renewal> renewal_;
    HeaderEntry* header_ = nullptr;
    Grid* lines_ = nullptr;
    LineEntry* lineEntry_ = nullptr;
    UnitRange* unitRange_ = nullptr;   ///< none where the lines name no units
    NoteChoice* noteChoice_ = nullptr; ///< none where the kind has no integration
    ScanEntry* scans_ = nullptr;       ///< likewise
    FooterEntry* footer_ = nullptr;    ///< none where it has no footer
    QStackedWidget* tray_ = nullptr;
    QLabel* kindLabel_ = nullptr;
    QLabel* total_ = nullptr;
    QPushButton* add_ = nullptr;
    QPushButton* addLine_ = nullptr;
    QPushButton* validate_ = nullptr;
    QPushButton* quit_ = nullptr;
};

} // namespace molven
