#include "app/ctl/command.h"

#include "data/format.h"
#include "sales/papers.h"

#include <QCommandLineParser>

namespace molven::ctl {

namespace {

const QString Year = QStringLiteral("annee"), Pdf = QStringLiteral("pdf");

/// The one invoice or credit note of that number.
QList<papers::Paper> find(SalesBook& book, const QString& number, const QString& year) {
    const QList<papers::Paper> found = papers::select(book, {year, number, number, {}});
    if (found.size() > 1)
        throw Refusal(QStringLiteral("Plusieurs documents ont le N° %1 : préciser --annee").arg(padded(number, 6)));
    return found;
}

} // namespace

Command invoiceCommand() {
    return {QStringLiteral("facture"),
            QStringLiteral("enregistre une facture ou un avoir, comme les écrans d'édition l'impriment"),
            QStringLiteral("DIR NUMERO"),
            [](QCommandLineParser& parser) {
                parser.addOption(dossierOption());
                parser.addOption({Year, QStringLiteral("année du document"), QStringLiteral("AAAA")});
                parser.addOption({Pdf, QStringLiteral("fichier PDF à écrire"), QStringLiteral("FICHIER")});
            },
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                if (!parser.isSet(Pdf)) throw Refusal(QStringLiteral("Préciser ce qu'il faut écrire : --pdf FICHIER"));
                const Session session = sessionOf(parser, arguments[0]);
                SalesBook book(session, documentKind(QStringLiteral("FAC")));
                const QList<papers::Paper> found = find(book, arguments[1], parser.value(Year));
                const papers::Style style = papers::styleOf(session.rules().reprintScreen(true));
                papers::print(book, found, style, {}).savePdf(parser.value(Pdf));
                say(papers::title(found) + QStringLiteral(" : ") + parser.value(Pdf));
                return 0;
            },
            2,
            true};
}

} // namespace molven::ctl
