#include "app/ctl/command.h"

#include "data/format.h"
#include "electronic/cii_writer.h"
#include "electronic/factur_x.h"
#include "sales/papers.h"

#include <QCommandLineParser>

namespace molven::ctl {

namespace {

const QString Year = QStringLiteral("annee"), Pdf = QStringLiteral("pdf"), FacturX = QStringLiteral("facturx"),
              Xml = QStringLiteral("xml");

QByteArray pdfOf(SalesBook& book, const papers::Paper& paper) {
    return papers::print(book, {paper}, papers::styleOf(book.rules().reprintScreen(true)), {}).pdf();
}

QByteArray xmlOf(SalesBook& book, const papers::Paper& paper) {
    return electronic::ciiOf(electronic::invoiceOf(book, paper));
}

/// What a document is saved as, by the option that names the file.
const QList<std::pair<QString, QByteArray (*)(SalesBook&, const papers::Paper&)>>& forms() {
    static const QList<std::pair<QString, QByteArray (*)(SalesBook&, const papers::Paper&)>> all{
        {Pdf, pdfOf}, {FacturX, electronic::facturX}, {Xml, xmlOf}};
    return all;
}

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
            [](Options& options) {
                options.addOption(dossierOption());
                options.addOption({Year, QStringLiteral("année du document"), QStringLiteral("AAAA")});
                options.addOption({Pdf, QStringLiteral("fichier PDF à écrire"), QStringLiteral("FICHIER")});
                options.addOption({FacturX, QStringLiteral("facture électronique Factur-X (PDF/A-3) à écrire"),
                                   QStringLiteral("FICHIER")});
                options.addOption(
                    {Xml, QStringLiteral("son seul XML (UN/CEFACT CII) à écrire"), QStringLiteral("FICHIER")});
                options.addOption(replaceOption());
            },
            [](const QCommandLineParser& parser, const QStringList& arguments) {
                if (!parser.isSet(Pdf) && !parser.isSet(FacturX) && !parser.isSet(Xml))
                    throw Refusal(QStringLiteral("Préciser ce qu'il faut écrire : --pdf, --facturx ou --xml FICHIER"));
                for (const auto& [form, bytesOf] : forms())
                    if (parser.isSet(form)) requireWritable(parser, parser.value(form));
                const Session session = sessionOf(parser, arguments[0]);
                SalesBook book(session, documentKind(QStringLiteral("FAC")));
                const QList<papers::Paper> found = find(book, arguments[1], parser.value(Year));
                for (const auto& [form, bytesOf] : forms()) {
                    if (!parser.isSet(form)) continue;
                    writeOut(parser, parser.value(form), bytesOf(book, found.first()));
                    say(papers::title(found) + QStringLiteral(" : ") + parser.value(form));
                }
                return 0;
            },
            2,
            true};
}

} // namespace molven::ctl
