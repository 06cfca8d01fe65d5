#include "printing/report.h"

namespace molven {

namespace {

const QString Narrow = QStringLiteral("Arial Narrow");
constexpr int BodyPoints = 9;
constexpr int FilingMargin = 850; ///< with the margin of the paper, 20 mm for the holes of a folder
constexpr int TextWidth[] = {PrintJob::ShortSide - FilingMargin, PrintJob::LongSide - FilingMargin};
constexpr int RowStep = 260, WordsStep = 220, TitleStep = 380, GroupGap = 120;
constexpr int MostPictureHeight = 4800;
constexpr int SignatureGap = 400, SignatureHeight = 1900, Hairline = 12;

} // namespace

Report::Report(const QString& title, const QList<PaperColumn>& columns, const QString& family)
    : title_(title), family_(family.isEmpty() ? Narrow : family), table_(columns, family_, BodyPoints) {}

void Report::say(const QString& words) {
    if (!words.isEmpty()) words_.append(words);
}

void Report::row(const QStringList& cells) {
    ++rows_;
    lines_.append({Line::Kind::Row, cells});
}

void Report::group(const QString& text, const QString& note) { lines_.append({Line::Kind::Group, {text, note}}); }

void Report::total(const QString& text) { lines_.append({Line::Kind::Total, {text}}); }

/// Lays the lines of a report out on pages; the headings come last, when the number of pages is known.
class ReportWriter {
public:
    ReportWriter(const Report& report, const QString& company, const QString& date, const Progress& told)
        : report_(report),
          told_(told),
          table_(measured()),
          job_(report.title_, isLying() ? Orientation::Lying : Orientation::Upright),
          width_(TextWidth[isLying()]),
          company_(company),
          date_(date) {
        table_.fit(width_);
        top_ = headingHeight();
    }

    PrintJob write() {
        y_ = top_ + table_.printTitles(job_, FilingMargin, top_);
        const qsizetype lines = report_.lines_.size();
        for (qsizetype i = 0; i < lines; ++i) {
            tell(told_, lines + i, 2 * lines); // the first half was the measuring
            writeLine(i);
        }
        writePictures();
        writeCount();
        writeSignatures();
        for (int page = 0; page < job_.pages(); ++page) printHeading(page);
        return job_;
    }

private:
    using Line = Report::Line;

    bool isLying() const { return naturalWidth_ > TextWidth[0]; }

    /// The columns as wide as what they hold.
    PaperTable measured() {
        PaperTable table = report_.table_;
        const qsizetype lines = report_.lines_.size();
        for (qsizetype i = 0; i < lines; ++i) {
            tell(told_, i, 2 * lines);
            if (report_.lines_[i].kind == Line::Kind::Row) table.measure(report_.lines_[i].cells);
        }
        naturalWidth_ = table.naturalWidth();
        return table;
    }

    int height(qsizetype i) const {
        if (i >= report_.lines_.size()) return 0;
        const Line& line = report_.lines_[i];
        if (line.kind == Line::Kind::Row) return table_.height(line.cells);
        return RowStep + GroupGap + (line.kind == Line::Kind::Group ? height(i + 1) : 0);
    }

    void writeLine(qsizetype i) {
        const Line& line = report_.lines_[i];
        if (line.kind == Line::Kind::Group) group_ = line.cells;
        if (y_ + height(i) > job_.height() - RowStep) startPage(line.kind == Line::Kind::Row);
        if (line.kind == Line::Kind::Row)
            y_ += table_.print(job_, FilingMargin, y_, line.cells);
        else
            writeBold(line.cells);
        if (line.kind == Line::Kind::Total) group_.clear();
    }

    void startPage(bool isInGroup) {
        job_.newPage();
        y_ = top_ + table_.printTitles(job_, FilingMargin, top_);
        if (isInGroup && !group_.isEmpty())
            writeBold({group_.first(), (group_.last() + QStringLiteral(" (suite)")).trimmed()});
    }

    void writeBold(const QStringList& textAndNote) {
        y_ += GroupGap;
        job_.setFont(report_.family_, 10, true);
        job_.setPosition(FilingMargin, y_);
        job_.print(textAndNote.first());
        job_.setPosition(FilingMargin + job_.textWidth(textAndNote.first()) + 200, y_);
        job_.setBold(false);
        job_.print(textAndNote.value(1));
        y_ += RowStep;
    }

    void writeCount() {
        if (!report_.isCounted_) return;
        if (y_ + RowStep + GroupGap > job_.height() - RowStep) startPage(false);
        writeBold({QStringLiteral("Nbre sélection : %1 / nbre de pages : %2").arg(report_.rows_).arg(job_.pages())});
    }

    void writePictures() {
        for (const QImage& image : report_.pictures_) {
            const int room = job_.height() - RowStep - top_;
            const int height =
                std::min({room, MostPictureHeight, width_ * image.height() / std::max(1, image.width())});
            y_ += GroupGap;
            if (y_ + height > job_.height() - RowStep) {
                job_.newPage();
                y_ = top_;
            }
            job_.setPosition(FilingMargin, y_);
            job_.picture(image, height * image.width() / std::max(1, image.height()), height);
            y_ += height;
        }
    }

    void writeSignatures() {
        if (report_.parties_.isEmpty()) return;
        y_ += SignatureGap;
        if (y_ + SignatureHeight > job_.height() - RowStep) startPage(false);
        const int width = (width_ - SignatureGap) / static_cast<int>(report_.parties_.size());
        for (qsizetype i = 0; i < report_.parties_.size(); ++i) {
            const int x = FilingMargin + static_cast<int>(i) * (width + SignatureGap);
            job_.setFont(report_.family_, 10, true);
            job_.setPosition(x, y_);
            job_.print(report_.parties_[i], width, RowStep);
            job_.setFont(report_.family_, BodyPoints);
            job_.setPosition(x, y_ + 2 * RowStep);
            job_.print(QStringLiteral("Nom, date et signature :"));
            job_.setPosition(x, y_ + SignatureHeight);
            job_.bar(width, Hairline);
        }
        y_ += SignatureHeight;
    }

    int headingHeight() {
        job_.setFont(report_.family_, 14, true);
        qsizetype height = RowStep + TitleStep * job_.lines(report_.title_, width_).size();
        job_.setFont(report_.family_, BodyPoints);
        for (const QString& words : report_.words_) height += WordsStep * job_.lines(words, width_).size();
        return static_cast<int>(height) + GroupGap;
    }

    void printHeading(int page) {
        job_.toPage(page);
        printPageNumber(page);
        job_.setFont(report_.family_, 10, true);
        job_.setPosition(FilingMargin, 0);
        job_.print(company_);
        job_.setFont(report_.family_, 14, true);
        job_.setPosition(FilingMargin, RowStep);
        int y = RowStep + TitleStep * job_.print(report_.title_, width_, TitleStep);
        job_.setFont(report_.family_, BodyPoints);
        for (const QString& words : report_.words_) {
            job_.setPosition(FilingMargin, y);
            y += WordsStep * job_.print(words, width_, WordsStep);
        }
    }

    void printPageNumber(int page) {
        job_.setFont(report_.family_, BodyPoints);
        const QString words =
            report_.pageWords_.isEmpty() ? QStringLiteral("Edition du %1   Page : ").arg(date_) : report_.pageWords_;
        const QString text = words + QString::number(page + 1);
        const QString ofAll = QStringLiteral(" / %1").arg(job_.pages());
        const int right = FilingMargin + width_ - job_.textWidth(ofAll);
        job_.setPosition(right - job_.textWidth(text), 20);
        job_.print(text);
        job_.setPosition(right, 20);
        job_.print(ofAll);
    }

    const Report& report_;
    const Progress& told_;
    int naturalWidth_ = 0; ///< of the table, before it is fitted to the paper
    PaperTable table_;
    PrintJob job_;
    const int width_;
    const QString company_, date_;
    QStringList group_; ///< of the rows being written; empty outside a group
    int top_ = 0, y_ = 0;
};

PrintJob Report::print(const QString& company, const QString& date, const Progress& told) const {
    return ReportWriter(*this, company, date, told).write();
}

} // namespace molven
