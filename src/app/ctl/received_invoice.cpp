#include "app/ctl/command.h"

#include "electronic/factur_x.h"
#include "electronic/invoice_words.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonObject>

namespace molven::ctl {

namespace {

double numberOf(const Decimal& value) { return value.toString().toDouble(); }

QJsonObject jsonOf(const electronic::Line& line) {
    QJsonObject attributes;
    for (const electronic::Attribute& attribute : line.attributes) attributes.insert(attribute.name, attribute.value);
    return {{QStringLiteral("ligne"), line.number},         {QStringLiteral("reference"), line.reference},
            {QStringLiteral("designation"), line.name},     {QStringLiteral("quantite"), numberOf(line.quantity)},
            {QStringLiteral("prix"), numberOf(line.price)}, {QStringLiteral("montant"), numberOf(line.amount)},
            {QStringLiteral("attributs"), attributes}};
}

QJsonObject jsonOf(const electronic::Invoice& invoice) {
    QJsonArray lines;
    for (const electronic::Line& line : invoice.lines) lines.append(jsonOf(line));
    return {{QStringLiteral("type"), invoice.type},
            {QStringLiteral("numero"), invoice.number},
            {QStringLiteral("date"), invoice.date.toString(Qt::ISODate)},
            {QStringLiteral("monnaie"), invoice.currency},
            {QStringLiteral("vendeur"), invoice.seller.name},
            {QStringLiteral("acheteur"), invoice.buyer.name},
            {QStringLiteral("lignes"), lines},
            {QStringLiteral("ht"), numberOf(invoice.base)},
            {QStringLiteral("tva"), numberOf(invoice.vatTotal)},
            {QStringLiteral("ttc"), numberOf(invoice.total)},
            {QStringLiteral("acompte"), numberOf(invoice.paid)},
            {QStringLiteral("net_a_payer"), numberOf(invoice.toPay)},
            {QStringLiteral("echeance"), invoice.due.toString(Qt::ISODate)}};
}

} // namespace

Command receivedInvoiceCommand() {
    return {QStringLiteral("facturx-lire"),
            QStringLiteral("lit une facture électronique reçue : PDF Factur-X ou XML UN/CEFACT"),
            QStringLiteral("FICHIER"),
            [](Options& options) { options.addOption(jsonOption()); },
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                const electronic::Invoice invoice = electronic::readFile(arguments[0]);
                if (wantsJson(parser))
                    sayData(jsonOf(invoice));
                else
                    for (const QString& line : electronic::words(invoice)) say(line);
                return 0;
            },
            1};
}

} // namespace molven::ctl
