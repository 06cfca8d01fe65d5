#pragma once

#include "printing/paper_table.h"

namespace molven {

/// A printed list: on every page whose it is, what it holds, its date and its page; columns, groups, totals. It lies
/// on its side when its texts need the width, and leaves room at the left to be filed.
class Report {
public:
    Report(const QString& title, const QList<PaperColumn>& columns, const QString& family = {});

    /// What stands before the number of a page, instead of "Edition du " the date "   Page : ".
    void headPages(const QString& words) { pageWords_ = words; }

    /// A line in words under the title: what the list was asked to hold.
    void say(const QString& words);
    void row(const QStringList& cells);
    /// A line in bold over the rows that follow, kept with the first of them and said again on their next page; a note
    /// stands beside it.
    void group(const QString& text, const QString& note = {});
    /// A line in bold under the last row.
    void total(const QString& text);
    /// Pictures under the last line, one below the other, at most a third of a page each.
    void picture(const QImage& image) { pictures_.append(image); }
    /// Room under the last line for each of these parties to sign, side by side.
    void sign(const QStringList& parties) { parties_ = parties; }
    /// The last line counts the rows and the pages.
    void count() { isCounted_ = true; }

    qsizetype rows() const { return rows_; }
    /// The list of this company on paper, its pages numbered; the date is "dd/mm/yyyy".
    /// Throws Refusal when its user stopped it.
    PrintJob print(const QString& company, const QString& date, const Progress& told = {}) const;

private:
    friend class ReportWriter;
    struct Line {
        enum class Kind { Row, Group, Total } kind;
        QStringList cells; ///< of a row; text and note otherwise
    };

    QString title_;
    QString family_; ///< of the font
    QString pageWords_;
    QStringList words_, parties_;
    QList<Line> lines_;
    QList<QImage> pictures_;
    PaperTable table_;
    qsizetype rows_ = 0;
    bool isCounted_ = false;
};

} // namespace molven
