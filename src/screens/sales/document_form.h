#pragma once

#include "sales/sales_book.h"
#include "ui/form.h"

class QLabel;
class QStackedWidget;

namespace molven {

class Grid;
class LineEntry;
class NoteChoice;
class RecordPanel;
class UnitRange;

/// Entry of one kind of sales document: header, lines, footer. The mode word chooses the kind.
class DocumentForm : public Form {
public:
    explicit DocumentForm(Desk& desk);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    enum class Stage { Empty, Entering, Shown, Changing };

    QLayout* buildHeader();
    QLayout* buildDocumentButtons();
    QLayout* buildLineButtons();
    QWidget* buildFooter();
    void buildTray();
    void setPickers();
    void setStage(Stage stage);
    void showTray(QWidget* part);
    void leaveTray();

    void startNew();
    void takeClient();
    void searchClient();
    void validateHeader();
    void startChanging();
    void abandon();
    void removeDocument();
    void display(const std::optional<Record>& header);
    void displayTyped();
    void pickDocument();
    void showWords();
    void refresh();
    /// Asks about a document left empty or without amount; false when a fault kept it open.
    bool closeDocument();
    void print();

    void addLine();
    void insertLine();
    void changeLine();
    void removeLine();
    void addRange(const QStringList& units);
    void openIntegration();
    void openFooter();
    void validateFooter();

    const Record& requireDocument() const;
    Record requireLine() const;
    QString typed(const Field& field) const;

    SalesBook book_;
    const DocumentHeaders& table_;
    std::optional<Record> document_;
    bool touched_ = false; ///< created or changed since it was brought up
    Stage stage_ = Stage::Empty;
    RecordPanel* header_ = nullptr;
    RecordPanel* address_ = nullptr;
    RecordPanel* footer_ = nullptr;
    Grid* lines_ = nullptr;
    LineEntry* lineEntry_ = nullptr;
    UnitRange* unitRange_ = nullptr;
    NoteChoice* noteChoice_ = nullptr;
    QWidget* footerPart_ = nullptr;
    QStackedWidget* tray_ = nullptr;
    QLabel* kindLabel_ = nullptr;
    QLabel* memo_ = nullptr;
    QLabel* total_ = nullptr;
    QList<QPushButton*> whenShown_;    ///< usable while a document is displayed
    QList<QPushButton*> whenEntering_; ///< usable while a header is typed
    QPushButton* add_ = nullptr;
    QPushButton* addLine_ = nullptr;
    QPushButton* abandon_ = nullptr;
};

} // namespace molven
