#include "printing/letter.h"

namespace molven {

namespace {

const QString Face = QStringLiteral("Arial");
constexpr int Left = 700, LineStep = 280, Width = 10'000, PageBottom = 15'200, AddressLeft = 6000;

class LetterWriter {
public:
    LetterWriter(PrintJob& job, const Letter& letter) : job_(job), letter_(letter) {}

    void write() {
        job_.setFont(Face, 12, true);
        put(Left, letter_.sender);
        y_ = 1800;
        job_.setFont(Face, 11);
        for (const QString& line : letter_.address) put(AddressLeft, line);
        y_ += LineStep;
        put(AddressLeft, letter_.placeAndDate);
        y_ += 2 * LineStep;
        job_.setFont(Face, 11, true);
        put(Left, letter_.subject);
        y_ += LineStep;
        job_.setFont(Face, 10);
        for (const QString& text : letter_.paragraphs) paragraph(text);
        table();
        y_ += LineStep;
        job_.setFont(Face, 10);
        for (const QString& text : letter_.closing) paragraph(text);
        job_.setFont(Face, 8);
        job_.setPosition(Left, 15'900);
        job_.print(letter_.footer);
    }

private:
    void put(int x, const QString& text) {
        if (y_ > PageBottom) {
            job_.newPage();
            y_ = 600;
        }
        job_.setPosition(x, y_);
        job_.print(text);
        y_ += LineStep;
    }

    /// Breaks a text at blanks to the width of the page.
    void paragraph(const QString& text) {
        QString line;
        for (const QString& word : text.split(u' ')) {
            const QString longer = line.isEmpty() ? word : line + u' ' + word;
            if (job_.textWidth(longer) > Width) {
                put(Left, line);
                line = word;
            } else {
                line = longer;
            }
        }
        put(Left, line);
        y_ += LineStep / 2;
    }

    void row(const QStringList& cells) {
        if (y_ > PageBottom) {
            job_.newPage();
            y_ = 600;
        }
        int x = Left;
        for (qsizetype i = 0; i < cells.size(); ++i) {
            job_.setPosition(x, y_);
            job_.print(cells[i]);
            x += letter_.widths.value(i);
        }
        y_ += LineStep;
    }

    void table() {
        job_.setFont(Face, 9, true);
        row(letter_.columns);
        job_.setFont(Face, 9);
        for (const QStringList& cells : letter_.rows) row(cells);
    }

    PrintJob& job_;
    const Letter& letter_;
    int y_ = 600;
};

} // namespace

PrintJob printed(const Letter& letter) {
    PrintJob job(letter.subject);
    LetterWriter(job, letter).write();
    return job;
}

} // namespace molven
