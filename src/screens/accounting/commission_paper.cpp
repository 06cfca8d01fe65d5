#include "screens/accounting/commission_paper.h"

#include "data/format.h"

namespace molven {

namespace {

const QString Face = QStringLiteral("Courier New");
constexpr int Left = 300, Step = 250, BodyPoints = 9, TotalPoints = 8;
constexpr int PageTop = 300, PageBottom = 10'700;
constexpr int TotalsEdge = 6000, BeforeTotal = 200, BetweenTotals = 300, TotalsHeight = BeforeTotal + 7 * BetweenTotals;

/// Where the cells of a line begin, and where those of an amount end.
constexpr int DateAt = 1100, ReferenceAt = 2400, LabelAt = 3950;
constexpr int QuantityEdge = 9350, TurnoverEdge = 10'900, ClassAt = 11'150, RateEdge = 12'500, CommissionEdge = 14'100,
              VatEdge = 15'900;

class CommissionWriter {
public:
    explicit CommissionWriter(const Period& period)
        : job_(QStringLiteral("RELEVE DES COMMISSIONS "), Orientation::Lying), period_(period) {}

    PrintJob write(const QList<commissions::Statement>& statements) {
        for (const commissions::Statement& statement : statements) {
            startPage(statement);
            for (const commissions::Line& line : statement.lines) {
                if (y_ + Step > PageBottom) startPage(statement);
                writeLine(line);
            }
            if (y_ + TotalsHeight > PageBottom) startPage(statement);
            writeTotals(statement);
        }
        return job_;
    }

private:
    void put(int x, const QString& text) {
        job_.setPosition(x, y_);
        job_.print(text);
    }
    void putBefore(int edge, const QString& text) { put(edge - job_.textWidth(text), text); }

    void startPage(const commissions::Statement& statement) {
        if (pages_++ > 0) job_.newPage();
        y_ = PageTop;
        job_.setFont(Face, 12, true);
        put(Left, QStringLiteral("RELEVE DES COMMISSIONS ") + period_.words());
        job_.setFont(Face, BodyPoints, true);
        putBefore(VatEdge, QStringLiteral("Page : ") + QString::number(pages_));
        y_ += 2 * Step;
        put(Left, QStringLiteral("Représentant : ") + statement.name);
        y_ += 2 * Step;
        put(Left - job_.textWidth(QStringLiteral(" ")), QStringLiteral(" N° FACTURE / DATE       REFERENCE/LIBELLE"));
        putBefore(QuantityEdge, QStringLiteral("QUANTITE"));
        putBefore(TurnoverEdge, QStringLiteral("   C.A."));
        put(ClassAt, QStringLiteral("TVA"));
        putBefore(RateEdge, QStringLiteral("TAUX"));
        putBefore(CommissionEdge, QStringLiteral(" MT COMM."));
        putBefore(VatEdge, QStringLiteral("TVA/COMM."));
        y_ += Step;
        job_.setPosition(Left, y_);
        job_.bar(VatEdge - Left, 10);
        y_ += Step / 2;
        job_.setFont(Face, BodyPoints);
    }

    void writeLine(const commissions::Line& line) {
        put(Left, line.number);
        put(DateAt, dayOfKey(line.day));
        put(ReferenceAt, line.reference);
        put(LabelAt, line.label);
        putBefore(QuantityEdge, format(line.quantity, QStringLiteral("####0.00")));
        putBefore(TurnoverEdge, format(line.net, QStringLiteral("###0.00")));
        put(ClassAt, line.vatClass);
        putBefore(RateEdge, format(line.rate, QStringLiteral("#0.00")));
        putBefore(CommissionEdge, format(line.commission, QStringLiteral("###0.00")));
        putBefore(VatEdge, format(line.vat, QStringLiteral("##0.00")));
        y_ += Step;
    }

    void writeTotal(const QString& words, const Decimal& amount) {
        put(Left, words);
        putBefore(TotalsEdge, format(amount, QStringLiteral("## ### ##0.00")));
        y_ += BetweenTotals;
    }

    void writeTaxed(const QString& words, const commissions::Total& total) {
        if (total.isEmpty()) return;
        writeTotal(words, total.commission);
        writeTotal(QStringLiteral("TVA AFFERENTE : "), total.vat);
    }

    void writeTotals(const commissions::Statement& statement) {
        y_ += BeforeTotal;
        job_.setFont(Face, TotalPoints);
        if (!statement.exempt.isEmpty())
            writeTotal(QStringLiteral("COMMISSIONS SUR C.A. NON SOUMIS A TVA : "), statement.exempt.commission);
        writeTaxed(QStringLiteral("COMMISSIONS SUR C.A. SOUMIS A TVA 5.50 % : "), statement.reduced);
        writeTaxed(QStringLiteral("COMMISSIONS SUR C.A. SOUMIS A TVA 19.60 % : "), statement.normal);
        job_.setFont(Face, TotalPoints, true);
        writeTotal(QStringLiteral("NET A PAYER : "), statement.due());
    }

    PrintJob job_;
    const Period period_;
    int y_ = 0, pages_ = 0;
};

} // namespace

PrintJob printedCommissions(const QList<commissions::Statement>& statements, const Period& period) {
    return CommissionWriter(period).write(statements);
}

} // namespace molven
