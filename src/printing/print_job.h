#pragma once

#include "data/progress.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QHash>
#include <QImage>
#include <QList>
#include <QPageLayout>
#include <QStringList>

#include <optional>

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
    QStringList lines = {}; ///< the text as broken to its width, when it took more than one line
    int lineStep = 0;       ///< twips from one line's top to the next one's
};

/// One filled rectangle of one page; twips.
struct PrintedBar {
    int page = 0;
    int x = 0, y = 0, width = 0, height = 0;
    QColor color = Qt::black;
};

/// One picture of one page; twips.
struct PrintedPicture {
    int page = 0;
    int x = 0, y = 0, width = 0, height = 0;
    QImage image;
};

enum class Orientation { Upright, Lying };

/// A print job on A4 being written: font, position, text, page, end. It is then painted on a printer, saved as a PDF,
/// shown in a preview, or read as text.
class PrintJob {
public:
    explicit PrintJob(const QString& title, Orientation orientation = Orientation::Upright)
        : title_(title), orientation_(orientation) {}

    void setFont(const QString& family, int points, bool bold = false);
    void setBold(bool bold);
    void setPosition(int x, int y) { x_ = x, y_ = y; }
    /// Prints at the current position, which stays.
    void print(const QString& text);
    /// Prints a text broken to a width; it stays one piece. Answers the number of lines.
    int print(const QString& text, int width, int lineStep);
    /// A text broken at its blanks to lines of that width in the current font; a longer word is cut.
    QStringList lines(const QString& text, int width) const;
    /// Fills a rectangle at the current position.
    void bar(int width, int height, const QColor& color = Qt::black);
    /// Prints a picture at the current position, as large as fits without being stretched. Answers its height.
    int picture(const QImage& image, int width, int height);
    void newPage() { toPage(lastPage_ + 1); }
    /// Goes on writing on a page, the first is 0.
    void toPage(int page) { page_ = page, lastPage_ = std::max(lastPage_, page); }
    /// Width of a text in the current font, twips.
    int textWidth(const QString& text) const;

    const QString& title() const { return title_; }
    int pages() const { return pieces_.isEmpty() ? 0 : lastPage_ + 1; }
    const QList<PrintedText>& pieces() const { return pieces_; }
    const QList<PrintedBar>& bars() const { return bars_; }
    /// True when a printed piece is exactly this text.
    bool contains(const QString& text) const;

    /// Paints one page; the painter's device tells its own resolution.
    void paint(QPainter& painter, int page) const;
    /// The paper of the job and its margins.
    QPageLayout pageLayout() const;
    /// The job as a PDF, for keeping as PDF/A-1b: fonts and colours in it. Throws Refusal when its user stopped it.
    enum class Pdf { Usual, Archive };
    QByteArray pdf(const Progress& told = {}, Pdf form = Pdf::Usual) const;
    /// PDF on the job's paper. Throws Refusal when the file cannot be written, or its user stopped it.
    void savePdf(const QString& path, const Progress& told = {}) const;

    static constexpr int MarginTwips = 284; ///< 5 mm on every side
    /// Sides of the printable page, twips.
    static constexpr int ShortSide = 11'906 - 2 * MarginTwips, LongSide = 16'838 - 2 * MarginTwips;
    int width() const { return orientation_ == Orientation::Lying ? LongSide : ShortSide; }
    int height() const { return orientation_ == Orientation::Lying ? ShortSide : LongSide; }

private:
    const QFontMetricsF& metrics() const;

    QString title_;
    Orientation orientation_;
    QFont font_;
    mutable std::optional<QFontMetricsF> metrics_; ///< of font_, made when first asked for
    int x_ = 0, y_ = 0, page_ = 0, lastPage_ = 0;
    QList<PrintedText> pieces_;
    QList<PrintedBar> bars_;
    QList<PrintedPicture> pictures_;
    /// What stands on one page, by its place among all.
    struct Page {
        QList<qsizetype> pieces, bars, pictures;
    };
    QHash<int, Page> onPage_;
};

} // namespace molven
