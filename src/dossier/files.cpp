#include "dossier/files.h"

#include "accounting/tables.h"
#include "reference/article_tables.h"
#include "reference/parameter_tables.h"
#include "reference/party_tables.h"
#include "reference/tariff_tables.h"
#include "sales/document_tables.h"
#include "shell/tables.h"
#include "stock/stock_tables.h"
#include "stock/unit_tables.h"

#include <map>

namespace molven {

const QList<const Table*>& tablesOf(DataFile file) {
    static const QList<const Table*> invoices{&strface, &strfacl};
    static const QList<const Table*> documents{&strface, &strfacl, &strlive, &strlivl,
                                               &strcsge, &strcsgl, &strbtre, &strbtrl};
    static const std::map<DataFile, QList<const Table*>> tables{
        {DataFile::Societe, {&strsociete}},
        {DataFile::Molven,
         {&strspecif, &strarticle, &strartlpp, &strconform, &strclient, &strfournis, &strparam, &strpan, &strparrgt,
          &strparfac, &strpartxt, &strmonnaie, &strlpp, &strpartips, &strtarifclt, &strparrem, &strtauxrep, &strproduit,
          &strmvtstk}},
        {DataFile::Vente, documents},
        {DataFile::Blent, {&strbl}},
        {DataFile::Proforma, invoices},
        {DataFile::Historic, documents + QList<const Table*>{&strproduit}},
        {DataFile::Ostrane, invoices},
        {DataFile::Ancillaire, {&strancillaire, &strnomenclature, &strstock}},
        {DataFile::Virtuel, {&strproduit, &strlivl, &strfacl, &strbtrl}},
        {DataFile::Compta, {&strplan}},
        {DataFile::Gencode, {&strgencode}},
        {DataFile::Mail, {}},
        {DataFile::Stocks, {&strmvtstk}},
        {DataFile::Tristk, {&strtristk}},
        {DataFile::Tri, {&etiq, &statd, &tripro}},
        {DataFile::Tripro, {&tripro}},
        {DataFile::Tridu, invoices},
        {DataFile::Documents, {&strdocs}},
    };
    return tables.at(file);
}

} // namespace molven
