#include "electronic/invoice_words.h"

#include "data/dates.h"
#include "data/format.h"
#include "reference/identifiers.h"

namespace molven::electronic {

namespace {

QString money(const Decimal& amount) { return format(amount, QStringLiteral("### ### ##0.00")); }

QStringList filled(QStringList texts) {
    texts.removeAll(QString());
    return texts;
}

QString named(const char* words, const QString& value) {
    return value.isEmpty() ? QString() : QString::fromUtf8(words) + value;
}

QString lineWords(const Line& line) {
    const QString goods = filled({line.reference, line.name, line.description}).join(u' ');
    return filled({QStringLiteral("%1 : %2").arg(line.number, goods),
                   QStringLiteral("%1 x %2 = %3").arg(shown(line.quantity), shown(line.price), money(line.amount)),
                   QStringLiteral("TVA %1 %").arg(shown(line.tax.rate)), attributeWords(line)})
        .join(QStringLiteral(" - "));
}

} // namespace

QString typeWords(const Invoice& invoice) {
    return invoice.isCreditNote() ? QStringLiteral("Avoir") : QStringLiteral("Facture");
}

QString partyWords(const Party& party) {
    const QString number = party.id.isEmpty() ? party.legal.value : party.id.value;
    return filled({party.name, (party.postcode + u' ' + party.town).trimmed(), party.country,
                   named("SIREN/SIRET ", number), named("N° TVA ", party.vatNumber)})
        .join(QStringLiteral(", "));
}

QString attributeWords(const Line& line) {
    QStringList texts;
    for (const Attribute& attribute : line.attributes) texts.append(attribute.name + u' ' + attribute.value);
    return texts.join(QStringLiteral(", "));
}

QStringList words(const Invoice& invoice) {
    QStringList lines{QStringLiteral("%1 %2 du %3").arg(typeWords(invoice), invoice.number, dateText(invoice.date)),
                      QStringLiteral("Vendeur : ") + partyWords(invoice.seller),
                      QStringLiteral("Acheteur : ") + partyWords(invoice.buyer),
                      named("Service : ", invoice.service),
                      named("Commande : ", invoice.order),
                      named("Bons de livraison : ", invoice.notesOfDelivery),
                      named("Document d'origine : ", invoice.preceding)};
    for (const Line& line : invoice.lines) {
        lines.append(QStringLiteral("Ligne ") + lineWords(line));
        for (const QString& note : line.notes) lines.append(QStringLiteral("    ") + note);
    }
    for (const Adjustment& one : invoice.adjustments)
        lines.append(QStringLiteral("%1 : %2").arg(one.reason, money(one.isCharge ? one.amount : -one.amount)));
    for (const Vat& vat : invoice.vat)
        lines.append(
            filled({QStringLiteral("TVA %1 % de %2 : %3").arg(shown(vat.tax.rate), money(vat.base), money(vat.amount)),
                    vat.tax.reason})
                .join(QStringLiteral(" - ")));
    lines +=
        {QStringLiteral("Total HT : ") + money(invoice.base), QStringLiteral("Total TVA : ") + money(invoice.vatTotal),
         QStringLiteral("Total TTC : ") + money(invoice.total) + u' ' + invoice.currency};
    if (!invoice.paid.isZero()) lines.append(QStringLiteral("Acompte : ") + money(invoice.paid));
    lines += {QStringLiteral("Net à payer : ") + money(invoice.toPay),
              named("Échéance : ", invoice.due.isValid() ? dateText(invoice.due) : QString()),
              named("Règlement : ", invoice.terms), named("IBAN : ", identifiers::inFours(invoice.iban))};
    for (const Note& note : invoice.notes) lines.append(note.text);
    return filled(lines);
}

} // namespace molven::electronic
