#pragma once

#include <QFont>
#include <QList>
#include <QString>

class QPainter;

namespace molven {

/// Twips, the unit of every place on paper: 1440 to the inch.
constexpr int TwipsPerInch = 1440;

/// One text at one place of one page.
struct PrintedText {
    int page = 0;
    int x = 0; ///< twips from the left edge of the printable page
    int y = 0; ///< twips from its top
    QFont font;
    QString text;
};

/// One filled rectangle of one page; twips.
struct PrintedBar {
    int page = 0;
    int x = 0, y = 0, width = 0, height = 0;
};

/// A print job being written: font, position, text, page, end. It is then painted on a printer, saved as a PDF,
/// shown in a preview, or read as text.
class PrintJob {
public:
    explicit PrintJob(const QString& title) : title_(title) {}

    void setFont(const QString& family, int points, bool bold = false);
    void setBold(bool bold) { font_.setBold(bold); }
    void setPosition(int x, int y) { x_ = x, y_ = y; }
    /// Prints at the current position, which stays.
    void print(const QString& text);
    /// Fills a rectangle at the current position.
    void bar(int width, int height) { bars_.append({page_, x_, y_, width, height}); }
    void newPage() { ++page_; }
    /// Width of a text in the current font, twips.
    int textWidth(const QString& text) const;

    const QString& title() const { return title_; }
    int pages() const { return pieces_.isEmpty() ? 0 : page_ + 1; }
    const QList<PrintedText>& pieces() const { return pieces_; }
    const QList<PrintedBar>& bars() const { return bars_; }
    /// True when a printed piece is exactly this text.
    bool contains(const QString& text) const;

    /// Paints one page; the painter's device tells its own resolution.
    void paint(QPainter& painter, int page) const;
    /// A4 PDF with the job's margins. Throws Refusal when the file cannot be written.
    void savePdf(const QString& path) const;

    static constexpr int MarginTwips = 284; ///< 5 mm on every side

private:
    QString title_;
    QFont font_;
    int x_ = 0, y_ = 0, page_ = 0;
    QList<PrintedText> pieces_;
    QList<PrintedBar> bars_;
};

} // namespace molven
