#include "electronic/amount_rules.h"

#include "data/format.h"

namespace molven::electronic {

QString Line::attribute(const QStringList& names) const {
    for (const QString& name : names)
        for (const Attribute& one : attributes)
            if (one.name.compare(name, Qt::CaseInsensitive) == 0) return one.value;
    return {};
}

namespace {

class Rules {
public:
    explicit Rules(const Invoice& invoice) : invoice_(invoice) {}

    QStringList broken() {
        checkTotals();
        checkVat();
        for (const Line& line : invoice_.lines)
            if ((line.price * line.quantity).rounded(2) != line.amount || line.price < Decimal())
                tell(QStringLiteral("BT-131, ligne %1").arg(line.number), line.amount,
                     (line.price * line.quantity).rounded(2));
        return broken_;
    }

private:
    void tell(const QString& rule, const Decimal& stated, const Decimal& expected) {
        broken_.append(QStringLiteral("%1 : %2 pour %3").arg(rule, amountText(stated), amountText(expected)));
    }
    void require(const char* rule, const Decimal& stated, const Decimal& expected) {
        if (stated != expected) tell(QString::fromLatin1(rule), stated, expected);
    }

    Decimal sumOf(bool charges) const {
        Decimal sum;
        for (const Adjustment& one : invoice_.adjustments)
            if (one.isCharge == charges) sum += one.amount;
        return sum;
    }

    void checkTotals() {
        Decimal lines, vat;
        for (const Line& line : invoice_.lines) lines += line.amount;
        for (const Vat& one : invoice_.vat) vat += one.amount;
        require("BR-CO-10", invoice_.linesTotal, lines);
        require("BR-CO-11", invoice_.allowances, sumOf(false));
        require("BR-CO-12", invoice_.charges, sumOf(true));
        require("BR-CO-13", invoice_.base, lines - sumOf(false) + sumOf(true));
        require("BR-CO-14", invoice_.vatTotal, vat);
        require("BR-CO-15", invoice_.total, invoice_.base + invoice_.vatTotal);
        require("BR-CO-16", invoice_.toPay, invoice_.total - invoice_.paid);
    }

    /// What the lines, allowances and charges taxed alike come to.
    Decimal baseOf(const Taxation& tax) const {
        Decimal base;
        for (const Line& line : invoice_.lines)
            if (line.tax == tax) base += line.amount;
        for (const Adjustment& one : invoice_.adjustments)
            if (one.tax == tax) base += one.isCharge ? one.amount : -one.amount;
        return base;
    }

    void checkVat() {
        for (const Vat& one : invoice_.vat) {
            require("BT-116", one.base, baseOf(one.tax));
            const Decimal expected = (one.base * one.tax.rate / Decimal(100)).rounded(2), away = one.amount - expected;
            if (away >= Decimal(1) || away <= Decimal(-1)) tell(QStringLiteral("BR-CO-17"), one.amount, expected);
        }
    }

    const Invoice& invoice_;
    QStringList broken_;
};

} // namespace

QStringList brokenRules(const Invoice& invoice) { return Rules(invoice).broken(); }

} // namespace molven::electronic
