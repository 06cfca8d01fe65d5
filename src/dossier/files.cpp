#include "accounting/tables.h"
#include "data/catalogue.h"
#include "data/journal_tables.h"
#include "reference/article_tables.h"
#include "reference/parameter_tables.h"
#include "reference/party_tables.h"
#include "reference/seller_tables.h"
#include "reference/tariff_tables.h"
#include "sales/document_tables.h"
#include "shell/tables.h"
#include "stock/depot_tables.h"
#include "stock/exchange_tables.h"
#include "stock/stock_tables.h"
#include "stock/unit_tables.h"

#include <map>

namespace molven {

const QList<const Table*>& tablesOf(DataFile file) {
    using Tables = QList<const Table*>;
    static const Tables journal{&strjournal, &strsceau};
    static const Tables invoices{&strface, &strfacl};
    static const Tables documents{&strface, &strfacl, &strlive, &strlivl, &strcsge, &strcsgl, &strbtre, &strbtrl};
    // Work files keep no journal: what is in them can be made again.
    static const std::map<DataFile, Tables> tables{
        {DataFile::Societe, journal + Tables{&strsociete}},
        {DataFile::Molven,
         journal + Tables{&strspecif,  &stremetteur, &strarticle,  &strartlpp,   &strconform, &strclient,
                          &strfournis, &strparam,    &strpan,      &strparrgt,   &strparfac,  &strpartxt,
                          &strmonnaie, &strlpp,      &strpartips,  &strtarifclt, &strparrem,  &strtauxrep,
                          &strproduit, &strmvtstk,   &strdotation, &strinvdep,   &strinvlig}},
        {DataFile::Vente, journal + documents},
        {DataFile::Blent, journal + Tables{&strbl}},
        {DataFile::Proforma, journal + invoices},
        {DataFile::Historic, journal + documents + Tables{&strproduit}},
        {DataFile::Ostrane, journal + invoices},
        {DataFile::Ancillaire, journal + Tables{&strancillaire, &strnomenclature, &strstock}},
        {DataFile::Virtuel, journal + Tables{&strproduit, &strlivl, &strfacl, &strbtrl}},
        {DataFile::Compta, journal + Tables{&strplan, &strecrit}},
        {DataFile::Gencode, journal + Tables{&strgencode}},
        {DataFile::Mail, {&strmail}},
        {DataFile::Stocks, journal + Tables{&strmvtstk}},
        {DataFile::Tristk, {&strtristk}},
        {DataFile::Tri, {&etiq, &statd, &statdc, &statdt, &tripro, &strecrit}},
        {DataFile::Tripro, {&tripro}},
        {DataFile::Tridu, invoices},
        {DataFile::Documents, {&strdocs}},
    };
    return tables.at(file);
}

} // namespace molven
