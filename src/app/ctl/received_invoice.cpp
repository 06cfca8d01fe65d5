#include "app/ctl/command.h"

#include "electronic/factur_x.h"
#include "electronic/invoice_words.h"

#include <QCommandLineParser>

namespace molven::ctl {

Command receivedInvoiceCommand() {
    return {QStringLiteral("facturx-lire"),
            QStringLiteral("lit une facture électronique reçue : PDF Factur-X ou XML UN/CEFACT"),
            QStringLiteral("FICHIER"),
            [](QCommandLineParser&) {},
            [](const QCommandLineParser&, const QStringList& arguments) {
                for (const QString& line : electronic::words(electronic::readFile(arguments[0]))) say(line);
                return 0;
            },
            1};
}

} // namespace molven::ctl
