#include "reference/countries.h"

#include <QHash>
#include <QLocale>

namespace molven::countries {

bool isKnown(const QString& code) {
    return code.size() == 2 && QLocale::codeToTerritory(code) != QLocale::AnyTerritory;
}

QString name(const QString& code) {
    static const QHash<QString, QString> french{
        {QStringLiteral("AD"), QStringLiteral("ANDORRE")},
        {QStringLiteral("AE"), QStringLiteral("ÉMIRATS ARABES UNIS")},
        {QStringLiteral("AT"), QStringLiteral("AUTRICHE")},
        {QStringLiteral("AU"), QStringLiteral("AUSTRALIE")},
        {QStringLiteral("BE"), QStringLiteral("BELGIQUE")},
        {QStringLiteral("BG"), QStringLiteral("BULGARIE")},
        {QStringLiteral("BR"), QStringLiteral("BRÉSIL")},
        {QStringLiteral("CA"), QStringLiteral("CANADA")},
        {QStringLiteral("CH"), QStringLiteral("SUISSE")},
        {QStringLiteral("CI"), QStringLiteral("CÔTE D'IVOIRE")},
        {QStringLiteral("CM"), QStringLiteral("CAMEROUN")},
        {QStringLiteral("CN"), QStringLiteral("CHINE")},
        {QStringLiteral("CY"), QStringLiteral("CHYPRE")},
        {QStringLiteral("CZ"), QStringLiteral("RÉPUBLIQUE TCHÈQUE")},
        {QStringLiteral("DE"), QStringLiteral("ALLEMAGNE")},
        {QStringLiteral("DK"), QStringLiteral("DANEMARK")},
        {QStringLiteral("DZ"), QStringLiteral("ALGÉRIE")},
        {QStringLiteral("EE"), QStringLiteral("ESTONIE")},
        {QStringLiteral("EG"), QStringLiteral("ÉGYPTE")},
        {QStringLiteral("ES"), QStringLiteral("ESPAGNE")},
        {QStringLiteral("FI"), QStringLiteral("FINLANDE")},
        {QStringLiteral("FR"), QStringLiteral("FRANCE")},
        {QStringLiteral("GA"), QStringLiteral("GABON")},
        {QStringLiteral("GB"), QStringLiteral("ROYAUME-UNI")},
        {QStringLiteral("GF"), QStringLiteral("GUYANE FRANÇAISE")},
        {QStringLiteral("GP"), QStringLiteral("GUADELOUPE")},
        {QStringLiteral("GR"), QStringLiteral("GRÈCE")},
        {QStringLiteral("HR"), QStringLiteral("CROATIE")},
        {QStringLiteral("HU"), QStringLiteral("HONGRIE")},
        {QStringLiteral("IE"), QStringLiteral("IRLANDE")},
        {QStringLiteral("IL"), QStringLiteral("ISRAËL")},
        {QStringLiteral("IN"), QStringLiteral("INDE")},
        {QStringLiteral("IT"), QStringLiteral("ITALIE")},
        {QStringLiteral("JP"), QStringLiteral("JAPON")},
        {QStringLiteral("LB"), QStringLiteral("LIBAN")},
        {QStringLiteral("LT"), QStringLiteral("LITUANIE")},
        {QStringLiteral("LU"), QStringLiteral("LUXEMBOURG")},
        {QStringLiteral("LV"), QStringLiteral("LETTONIE")},
        {QStringLiteral("MA"), QStringLiteral("MAROC")},
        {QStringLiteral("MC"), QStringLiteral("MONACO")},
        {QStringLiteral("MG"), QStringLiteral("MADAGASCAR")},
        {QStringLiteral("MQ"), QStringLiteral("MARTINIQUE")},
        {QStringLiteral("MT"), QStringLiteral("MALTE")},
        {QStringLiteral("MU"), QStringLiteral("MAURICE")},
        {QStringLiteral("NC"), QStringLiteral("NOUVELLE-CALÉDONIE")},
        {QStringLiteral("NL"), QStringLiteral("PAYS-BAS")},
        {QStringLiteral("NO"), QStringLiteral("NORVÈGE")},
        {QStringLiteral("PF"), QStringLiteral("POLYNÉSIE FRANÇAISE")},
        {QStringLiteral("PL"), QStringLiteral("POLOGNE")},
        {QStringLiteral("PT"), QStringLiteral("PORTUGAL")},
        {QStringLiteral("RE"), QStringLiteral("LA RÉUNION")},
        {QStringLiteral("RO"), QStringLiteral("ROUMANIE")},
        {QStringLiteral("SA"), QStringLiteral("ARABIE SAOUDITE")},
        {QStringLiteral("SE"), QStringLiteral("SUÈDE")},
        {QStringLiteral("SI"), QStringLiteral("SLOVÉNIE")},
        {QStringLiteral("SK"), QStringLiteral("SLOVAQUIE")},
        {QStringLiteral("SN"), QStringLiteral("SÉNÉGAL")},
        {QStringLiteral("TN"), QStringLiteral("TUNISIE")},
        {QStringLiteral("TR"), QStringLiteral("TURQUIE")},
        {QStringLiteral("US"), QStringLiteral("ÉTATS-UNIS")},
    };
    if (!isKnown(code)) return {};
    return french.value(code, QLocale::territoryToString(QLocale::codeToTerritory(code)).toUpper());
}

} // namespace molven::countries
