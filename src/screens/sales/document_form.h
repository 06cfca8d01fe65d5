#pragma once

#include "sales/sales_book.h"
#include "ui/form.h"

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

/// Entry of one kind of sales document: header, lines, footer. The mode word chooses the kind.
class DocumentForm : public Form {
public:
    explicit DocumentForm(Desk& desk);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    enum class Stage { Empty, Entering, Shown, Changing };

    // Building, in document_form.cpp.
    QLayout* buildDocumentButtons();
    QLayout* buildLineButtons();
    void buildTray();
    void orderKeyboard();
    void setStage(Stage stage);
    void showButtons();

    // The document and its header, in document_steps.cpp.
    void startNew();
    void validateHeader();
    void startChanging();
    void abandon();
    void removeDocument();
    void display(const std::optional<Record>& document);
    void leafTo(const std::optional<Record>& document);
    void displayTyped();
    void pickDocument();
    void print();
    void readAgain();
    void refresh();
    /// A button whose deed may meet what another workstation did meanwhile.
    QPushButton* deed(const QString& name, const QString& caption, const std::function<void()>& handler);
    void attempt(const std::function<void()>& deed);
    void reread();
    std::optional<Record> stored();
    void offerUnfinished();
    /// Asks about a document left empty or without amount; false when a fault kept it open.
    bool closeDocument();
    /// The question that closing the document would put; empty when none.
    QString closingQuestion();
    /// False when the user keeps a header being typed.
    bool mayLeaveHeader();
    void leaveInnermost();
    const Record& requireDocument() const;
    /// The document in words, for questions that destroy.
    QString about(const Record& document) const;

    // What opens below the lines, in document_tray.cpp.
    void showTray(TrayPart* part);
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

    SalesBook book_;
    const DocumentHeaders& table_;
    std::optional<Record> document_;
    QList<Record> linesRead_; ///< as they stand on the screen
    bool touched_ = false;    ///< created or changed since it was brought up
    Stage stage_ = Stage::Empty;
    HeaderEntry* header_ = nullptr;
    Grid* lines_ = nullptr;
    LineEntry* lineEntry_ = nullptr;
    UnitRange* unitRange_ = nullptr;
    NoteChoice* noteChoice_ = nullptr;
    ScanEntry* scans_ = nullptr;
    FooterEntry* footer_ = nullptr;
    QStackedWidget* tray_ = nullptr;
    QLabel* kindLabel_ = nullptr;
    QLabel* total_ = nullptr;
    QList<QPushButton*> whenShown_;  ///< usable while a document is displayed
    QList<QPushButton*> whenOpen_;   ///< ... and while it is being changed: they concern its lines
    QList<QPushButton*> whenTyping_; ///< usable while a header is typed
    QList<QPushButton*> whenIdle_;   ///< usable unless a header is typed, which they would lose
    QPushButton* add_ = nullptr;
    QPushButton* addLine_ = nullptr;
    QPushButton* validate_ = nullptr;
    QPushButton* quit_ = nullptr;
};

} // namespace molven
