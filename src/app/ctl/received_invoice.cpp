#include "app/ctl/command.h"

#include "electronic/factur_x.h"
#include "electronic/invoice_words.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace molven::ctl {

namespace {

QJsonObject jsonOf(const electronic::Line& line) {
    QJsonObject attributes;
    for (const electronic::Attribute& attribute : line.attributes) attributes.insert(attribute.name, attribute.value);
    return {{QStringLiteral("ligne"), line.number},
            {QStringLiteral("reference"), line.reference},
            {QStringLiteral("designation"), line.name},
            {QStringLiteral("quantite"), line.quantity.toString().toDouble()},
            {QStringLiteral("prix"), line.price.toString().toDouble()},
            {QStringLiteral("montant"), line.amount.toString().toDouble()},
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
            {QStringLiteral("lignes"), lines}};
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
                    say(QString::fromUtf8(QJsonDocument(jsonOf(invoice)).toJson(QJsonDocument::Compact)));
                else
                    for (const QString& line : electronic::words(invoice)) say(line);
                return 0;
            },
            1};
}

} // namespace molven::ctl
