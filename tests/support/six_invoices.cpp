#include "support/six_invoices.h"

#include "reference/article_tables.h"
#include "reference/parameters.h"
#include "reference/parties.h"
#include "reference/tariff_tables.h"
#include "sales/documents.h"

namespace molven::test {

namespace {

//  N°  client  date        quantity  price   disc.  VAT       net     VAT     total
//  1   1       10/03/2026      2     100.00  10 %   5.5 %    180.00    9.90  189.90   purchase 40.00
//  2   1       15/03/2026      1     123.45         5.5 %    123.45    6.79  130.24
//  3   2       20/03/2026      1      33.33         20 %      29.40   11.77   82.56   less 10 %, less 2 %,
//  carriage 10.00
//                              1      33.33         20 %      29.39
//  4   1       25/03/2026     -1      50.00         5.5 %    -50.00   -2.75  -52.75   credit note, purchase 20.00
//  5   3       28/03/2026      1     105.50 TTC     5.5 %    100.00    5.50  110.50   abroad, exempt 5.00
//  6   2       02/04/2026      3      10.00         5.5 %     30.00    1.65   31.65

struct Sale {
    int quantity;
    const char *price, *discount, *vatCode, *purchase, *basis;
};

struct Footer {
    const char *discount = "0", *settlement = "0", *carriage = "0", *exempt = "0";
};

void write(const Session& session, const char* mode, const char* client, const char* day, const QList<Sale>& sales,
           const Footer& footer = {}) {
    SalesBook book(session, documentKind(QString::fromLatin1(mode)));
    const DocumentLines& table = book.kind().lines;
    Record header = documents::blank(book, QString::fromLatin1(client));
    header[strface.fac_datf] = QString::fromLatin1(day);
    header = documents::create(book, header);
    QList<document_lines::Draft> drafts;
    for (const Sale& sale : sales) {
        document_lines::Draft draft = lineOfArticle(book, header, QStringLiteral("FEE"), sale.quantity);
        draft.withoutVat = sale.basis[0] == 'H';
        draft.line[table.fac_px] = euros(sale.price);
        draft.line[table.fac_remx] = euros(sale.discount);
        draft.line[table.fac_tva] = QString::fromLatin1(sale.vatCode);
        draft.line[table.fac_pa] = euros(sale.purchase);
        draft.line[table.fac_tar] = QString::fromLatin1(sale.basis);
        drafts.append(draft);
    }
    document_lines::add(book, header, drafts);
    const Record read = documents::current(book, header);
    Record changed = read;
    changed[strface.fac_rem] = euros(footer.discount);
    changed[strface.fac_esc] = euros(footer.settlement);
    changed[strface.fac_port] = euros(footer.carriage);
    changed[strface.fac_exo] = euros(footer.exempt);
    documents::changeFooter(book, changed, read);
}

void addThirdClient(Database molven) {
    Record client = parties::blankClient(molven);
    client[strclient.clt_nom] = QStringLiteral("CLINIQUE SAINT-JEAN");
    client[strclient.clt_l5] = QStringLiteral("B-1000 BRUXELLES");
    client[strclient.clt_cpt] = QStringLiteral("000303");
    client[strclient.clt_rep] = QStringLiteral("001");
    client[strclient.clt_pays] = QStringLiteral("BE");
    molven.insert(client);
}

void addReference(const Session& session) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    Transaction transaction(workspace);
    Record representative(strparam);
    representative[strparam.cod_par] = list::Representative;
    representative[strparam.num_par] = QStringLiteral("001");
    representative[strparam.lib_par] = QStringLiteral("MARTIN MARIE");
    molven.insert(representative);
    Record rate(strtauxrep);
    rate[strtauxrep.c_rep] = QStringLiteral("001");
    rate[strtauxrep.c_ref] = QStringLiteral("HAN");
    rate[strtauxrep.c_tau] = Decimal(3);
    molven.insert(rate);
    molven.update(strarticle, {{strarticle.art_crp, QStringLiteral("HAN")}},
                  strarticle.art_ref == QStringLiteral("FEE"));
    const auto& c = strclient;
    molven.update(c,
                  {{c.clt_rep, QStringLiteral("001")},
                   {c.clt_cpt, QStringLiteral("000101")},
                   {c.clt_l5, QStringLiteral("69008 LYON")}},
                  c.clt_cod == QStringLiteral("000001"));
    molven.update(c, {{c.clt_rep, QStringLiteral("002")}, {c.clt_l5, QStringLiteral("97400 SAINT-DENIS")}},
                  c.clt_cod == QStringLiteral("000002"));
    addThirdClient(molven);
    transaction.commit();
}

} // namespace

SixInvoices::SixInvoices() {
    addReference(dossier.session);
    const Session& session = dossier.session;
    write(session, "FAC", "1", "10/03/2026", {{2, "100", "10", "1", "40", "H"}});
    write(session, "FAC", "1", "15/03/2026", {{1, "123.45", "0", "1", "0", "H"}});
    write(session, "FAC", "2", "20/03/2026", {{1, "33.33", "0", "2", "0", "H"}, {1, "33.33", "0", "2", "0", "H"}},
          {"10", "2", "10", "0"});
    write(session, "AVO", "1", "25/03/2026", {{1, "50", "0", "1", "20", "H"}});
    write(session, "FAC", "3", "28/03/2026", {{1, "105.50", "0", "1", "0", "T"}}, {"0", "0", "0", "5"});
    write(session, "FAC", "2", "02/04/2026", {{3, "10", "0", "1", "0", "H"}});
}

} // namespace molven::test
