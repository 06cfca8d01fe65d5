#include "printing/letter.h"

namespace molven {

namespace {

const QString Face = QStringLiteral("Arial");
constexpr int Left = 850, Width = PrintJob::ShortSide - Left - 400, AddressLeft = 6000;
constexpr int TextStep = 280, SlipStep = 420, PageTop = 600, PageBottom = 15'400, FooterTop = 15'900;

class LetterWriter {
public:
    /// Begins on the page that the job has reached.
    LetterWriter(PrintJob& job, const Letter& letter) : job_(job), letter_(letter), firstPage_(job.pages()) {
        job_.toPage(firstPage_);
    }

    void write() {
        parties();
        job_.setFont(Face, 11, true);
        put(Left, letter_.subject, Width);
        y_ += TextStep;
        paragraphs(letter_.paragraphs);
        table();
        totals();
        y_ += TextStep;
        paragraphs(letter_.closing);
        slip();
        for (int page = firstPage_, end = job_.pages(); page < end; ++page) footer(page, end - firstPage_);
    }

private:
    void parties() {
        job_.setFont(Face, 12, true);
        put(Left, letter_.sender, AddressLeft - Left);
        job_.setFont(Face, 10);
        for (const QString& line : letter_.senderAddress) put(Left, line, AddressLeft - Left);
        y_ = std::max(y_ + TextStep, 2200);
        job_.setFont(Face, 11);
        for (const QString& line : letter_.address) put(AddressLeft, line, Width + Left - AddressLeft);
        y_ += TextStep;
        put(AddressLeft, letter_.placeAndDate, Width + Left - AddressLeft);
        y_ += 2 * TextStep;
    }

    /// Starts a page when this height does not fit.
    bool need(int height) {
        if (y_ + height <= PageBottom) return false;
        job_.newPage();
        y_ = PageTop;
        return true;
    }

    void put(int x, const QString& text, int width) {
        need(static_cast<int>(job_.lines(text, width).size()) * TextStep);
        job_.setPosition(x, y_);
        y_ += job_.print(text, width, TextStep) * TextStep;
    }

    void paragraphs(const QStringList& texts) {
        job_.setFont(Face, 10);
        for (const QString& text : texts) {
            put(Left, text, Width);
            y_ += TextStep / 2;
        }
    }

    void table() {
        PaperTable table(letter_.columns, Face, 9);
        for (const QStringList& cells : letter_.rows) table.measure(cells);
        table.fit(Width);
        need(4 * TextStep);
        y_ += table.printTitles(job_, Left, y_);
        for (const QStringList& cells : letter_.rows) {
            if (need(table.height(cells))) y_ += table.printTitles(job_, Left, y_);
            y_ += table.print(job_, Left, y_, cells);
        }
    }

    void totals() {
        job_.setFont(Face, 10, true);
        for (const QString& text : letter_.totals)
            put(Left + Width - std::min(Width, job_.textWidth(text)), text, Width);
    }

    void slip() {
        if (letter_.slipTitle.isEmpty()) return;
        y_ += TextStep;
        need(2 * TextStep + static_cast<int>(letter_.slip.size()) * SlipStep);
        job_.setPosition(Left, y_);
        job_.bar(Width, 10);
        y_ += TextStep;
        job_.setFont(Face, 11, true);
        put(Left, letter_.slipTitle, Width);
        job_.setFont(Face, 10);
        for (const QString& line : letter_.slip) {
            y_ += SlipStep - TextStep;
            put(Left, line, Width);
        }
    }

    void footer(int page, int pages) {
        job_.toPage(page);
        job_.setFont(Face, 8);
        job_.setPosition(Left, FooterTop);
        job_.print(letter_.footer);
        const QString number = QStringLiteral("Page : %1 / %2").arg(page - firstPage_ + 1).arg(pages);
        job_.setPosition(Left + Width - job_.textWidth(number), FooterTop);
        job_.print(number);
    }

    PrintJob& job_;
    const Letter& letter_;
    const int firstPage_;
    int y_ = PageTop;
};

} // namespace

PrintJob printed(const Letter& letter) { return printed(QList<Letter>{letter}, letter.subject); }

PrintJob printed(const QList<Letter>& letters, const QString& title) {
    PrintJob job(title);
    for (const Letter& letter : letters) LetterWriter(job, letter).write();
    return job;
}

} // namespace molven
