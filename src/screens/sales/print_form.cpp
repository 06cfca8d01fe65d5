#include "screens/sales/print_form.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/safe_file.h"
#include "sales/invoice_extract.h"
#include "ui/edit.h"
#include "ui/progress.h"

#include <QDir>
#include <QPushButton>

namespace molven {

namespace {

const QString Year = QStringLiteral("txtann"), First = QStringLiteral("txtdeb"), Last = QStringLiteral("Txtfin"),
              Client = QStringLiteral("txtclt"), Patient = QStringLiteral("txtpat"), Article = QStringLiteral("txtref"),
              Copies = QStringLiteral("txtexe"), Files = QStringLiteral("Cmbpdf");

QList<CriterionBox> boxes(bool isExtract) {
    QList<CriterionBox> all{
        {.name = Year, .caption = QStringLiteral("&Année :"), .characters = 4},
        {.name = First, .caption = QStringLiteral("&N° du :"), .characters = 6, .isBound = true, .digits = 6},
        {.name = Last, .caption = QStringLiteral("au :"), .characters = 6, .isBound = true, .digits = 6},
        {.name = Client, .caption = QStringLiteral("C&lient :"), .characters = 6, .code = &codes::Client}};
    if (isExtract)
        return all + QList<CriterionBox>{{.name = Patient, .caption = QStringLiteral("&Patient :"), .characters = 30},
                                         {.name = Article,
                                          .caption = QStringLiteral("Ar&ticle :"),
                                          .characters = 13,
                                          .code = &codes::Article}};
    return all + QList<CriterionBox>{
                     {.name = Copies, .caption = QStringLiteral("Exe&mplaires :"), .characters = 2},
                     {.name = Files,
                      .caption = QStringLiteral("En PD&F :"),
                      .options = {QStringLiteral("Un seul fichier"), QStringLiteral("Un fichier par document")}}};
}

QList<GridColumn> columns(const DocumentKind& kind) {
    const DocumentHeaders& h = kind.headers;
    QList<GridColumn> all{{&h.fac_no, QStringLiteral("N°"), 80},        {&h.fac_datf, QStringLiteral("Date"), 100},
                          {&h.fac_clt, QStringLiteral("Client"), 70},   {&h.fac_nom, QStringLiteral("Nom"), 260},
                          {&h.fac_pat, QStringLiteral("Patient"), 160}, {&h.fac_refc, QStringLiteral("Commande"), 130}};
    if (kind.isPriced) all.append({&h.fac_ttc, QStringLiteral("Total TTC"), 110, QStringLiteral("#####0.00")});
    return all;
}

} // namespace

PrintForm::PrintForm(Desk& desk, const PrintScreen& screen)
    : SelectionForm(desk, screen.name),
      screen_(screen),
      book_(session(), kindOfWords(screen, mode(), session().rules())) {
    const QString title =
        screen.isExtract ? QStringLiteral("Extrait de factures") : QStringLiteral("Édition : ") + book_.kind().label;
    build({.title = title,
           .criteria = boxes(screen.isExtract),
           .across = 4,
           .list = columns(book_.kind()),
           .searches = {{QStringLiteral("cmdvalide"), QStringLiteral("&Rechercher"), [this] { select(); }}},
           .deeds = {{QStringLiteral("Cmdvisu"), QStringLiteral("Aperç&u"), [this] { preview(); }},
                     {QStringLiteral("Cmdimp"), QStringLiteral("&Imprimer"), [this] { print(); }},
                     {QStringLiteral("Cmdpdf"), QStringLiteral("Enre&gistrer en PDF"), [this] { savePdf(); }},
                     {QStringLiteral("Cmdfacturx"), QStringLiteral("Factur-&X"), [this] { saveElectronic(); }}},
           .files = {{DataFile::Molven, book_.molven}},
           .size = {1080, 560}});
    findChild<QPushButton*>(QStringLiteral("Cmdfacturx"))
        ->setVisible(!screen.isExtract && electronicForm(book_.kind()));
    criteria().edit(Year)->put(QString::number(Clock::today().year()));
    if (!screen.isExtract) criteria().edit(Copies)->put(QStringLiteral("1"));
    criteria().edit(First)->setFocus();
}

void PrintForm::take(const Record& header) {
    const DocumentHeaders& h = book_.kind().headers;
    criteria().edit(Year)->put(header[h.fac_aa]);
    for (const QString& number : {First, Last}) criteria().edit(number)->put(header[h.fac_no]);
    criteria().edit(Client)->put({});
    select();
}

papers::Range PrintForm::typed() const {
    return {criteria().value(Year), criteria().value(First), criteria().value(Last), criteria().value(Client)};
}

QStringList PrintForm::criteriaTyped() const {
    QStringList values;
    for (const QString& box : {Year, First, Last, Client, Patient, Article}) values.append(criteria().value(box));
    return values;
}

void PrintForm::select() {
    clearSelection();
    found_.clear();
    const papers::Range range = typed();
    patiently(*this, book_.workspace, QStringLiteral("Recherche des documents"), [&] {
        found_ = screen_.isExtract
                     ? invoice_extract::select(book_, {range, criteria().value(Patient), criteria().value(Article)})
                     : papers::select(book_, range);
    });
    asked_ = criteriaTyped();
    QList<Record> headers;
    for (const papers::Paper& paper : found_) headers.append(paper.header);
    showRows(headers);
}

QList<papers::Paper> PrintForm::wanted() {
    if (found_.isEmpty() || asked_ != criteriaTyped()) select();
    if (list().rows().filter().isEmpty()) return found_;
    const DocumentHeaders& h = book_.kind().headers;
    const auto key = [&h](const Record& header) { return header[h.fac_aa] + header[h.fac_no]; };
    QSet<QString> listed;
    list().rows().forEach([&](const Record& header) { listed.insert(key(header)); });
    QList<papers::Paper> papers;
    for (const papers::Paper& paper : found_)
        if (listed.contains(key(paper.header))) papers.append(paper);
    if (papers.isEmpty()) throw Refusal(QStringLiteral("Faire une sélection"), First);
    return papers;
}

PrintJob PrintForm::job(const QList<papers::Paper>& documents) {
    const Progress told = progress(*this, QStringLiteral("Mise en page"));
    if (screen_.isExtract) {
        const invoice_extract::Enquiry enquiry{typed(), criteria().value(Patient), criteria().value(Article)};
        return invoice_extract::list(book_, documents, enquiry, told)
            .print(session().spe_nom, dateText(Clock::today()), told);
    }
    const papers::Style style = papers::styleOf(screen_.name);
    return papers::print(book_, documents, style, style.hasBars ? desk().barcodeFamily() : QString(), told);
}

void PrintForm::preview() { desk().print(job(wanted())); }

void PrintForm::print() {
    const int copies = screen_.isExtract ? 1 : criteria().value(Copies).toInt();
    if (copies < 1) throw Refusal(QStringLiteral("Nombre d'exemplaires incorrect"), Copies);
    desk().printCopies(job(wanted()), copies);
}

QString PrintForm::folder() {
    const QString folder = session().chemin_tri + QStringLiteral("pdf");
    if (!QDir().mkpath(folder)) throw Refusal(QStringLiteral("Impossible de créer le dossier %1").arg(folder));
    return folder;
}

void PrintForm::tellSaved(qsizetype files) {
    notify(QStringLiteral("%1 dans %2").arg(counted(files, QStringLiteral("fichier")), folder()));
}

void PrintForm::savePdf() {
    QList<QList<papers::Paper>> files{wanted()};
    if (criteria().choice(Files) == 1) {
        const QList<papers::Paper> documents = files.takeFirst();
        for (const papers::Paper& document : documents) files.append({document});
    }
    for (const QList<papers::Paper>& documents : files) {
        const PrintJob pages = job(documents);
        pages.savePdf(freeName(folder() + u'/' + pages.title() + QStringLiteral(".pdf")));
    }
    tellSaved(files.size());
}

void PrintForm::saveElectronic() {
    const auto save = electronicForm(book_.kind());
    tellSaved(save(book_, wanted(), folder(), progress(*this, QStringLiteral("Factures électroniques"))));
}

} // namespace molven
