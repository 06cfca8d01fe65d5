#include "sales/stock_rebuild.h"

#include "data/period.h"
#include "reference/articles.h"
#include "sales/document_tables.h"
#include "sales/documents.h"
#include "shell/other_folders.h"
#include "stock/movements.h"

#include <memory>

namespace molven::stock_rebuild {

namespace {

const QStringList& companyFolders() {
    static const QStringList names{QStringLiteral("CL"), QStringLiteral("EG"), QStringLiteral("SR")};
    return names;
}

/// Every file of sales documents that counts, each read by a connection of its own.
class SalesFiles {
public:
    explicit SalesFiles(const Session& session) : others_(session) {
        open(session.vente());
        open(session.historic());
        if (const QString book = session.path(DataFile::Ostrane); Database::exists(book)) open(book);
        for (const Database& file : others_.files()) add(file);
        for (const QString& name : companyFolders()) {
            const QString folder = session.chemin_base + name + u'/';
            if (!Database::exists(folder + catalogueEntry(DataFile::Vente).name)) absent_.append(name + u'\\');
            for (const DataFile file : {DataFile::Vente, DataFile::Historic})
                if (Database::exists(folder + catalogueEntry(file).name)) open(folder + catalogueEntry(file).name);
        }
    }

    const QList<Database>& all() const { return files_; }
    const QStringList& absent() const { return absent_; }

private:
    void open(const QString& path) {
        connections_.push_back(std::make_unique<Workspace>());
        add(connections_.back()->open(path));
    }
    /// A folder may be a user's and a company's at once: its documents count once.
    void add(const Database& file) {
        if (!paths_.contains(Database::canonical(file.path()))) files_.append(file);
        paths_.insert(Database::canonical(file.path()));
    }

    OtherFolders others_;
    std::vector<std::unique_ptr<Workspace>> connections_;
    QList<Database> files_;
    QSet<QString> paths_;
    QStringList absent_;
};

QString documentKey(const QString& year, const QString& number) { return year + u'/' + number; }

/// Writes what the documents of one family sold into the work table; answers how many lines.
qint64 gather(Database file, Database tristk, const DocumentHeaders& headers, const DocumentLines& lines,
              const Criterion& documents) {
    QHash<QString, Record> found;
    for (const Record& header : file.select(headers, documents))
        found.insert(documentKey(header[headers.fac_aa], header[headers.fac_no]), header);
    if (found.isEmpty()) return 0;
    qint64 gathered = 0;
    const bool isInvoice = &headers == &strface;
    for (const Record& line : file.select(lines, lines.fac_imm == QString() && lines.fac_lg != QStringLiteral("000"))) {
        const auto header = found.constFind(documentKey(line[lines.fac_aa], line[lines.fac_no]));
        if (header == found.constEnd() || line[lines.fac_qte].isZero()) continue;
        Record sold(strtristk);
        sold[strtristk.fac_ref] = line[lines.fac_ref];
        sold[strtristk.fac_qte] = line[lines.fac_qte];
        sold[strtristk.fac_clt] = (*header)[headers.fac_clt];
        sold[isInvoice ? strtristk.fac_datf : strtristk.fac_date] = (*header)[headers.fac_datf];
        sold[isInvoice ? strtristk.tri_datf : strtristk.fac_tri] = (*header)[headers.tri_datf];
        tristk.insert(sold);
        ++gathered;
    }
    return gathered;
}

/// References in upper case, as the engine compares them.
using Quantities = QHash<QString, Decimal>;

void add(Quantities& quantities, const QHash<QString, Decimal>& found, int sign) {
    for (auto one = found.begin(); one != found.end(); ++one)
        quantities[one.key().toUpper()] += Decimal(sign) * one.value();
}

Quantities moved(MovementFiles files, const Period& period) {
    Quantities quantities;
    const auto& m = strmvtstk;
    for (Database file : files.all())
        for (const auto& [kind, sign] :
             {std::pair(movement::Inventory, 1), std::pair(movement::Entry, 1), std::pair(movement::Exit, -1)})
            add(quantities, file.sumBy(m, m.ref_stk, m.qte_stk, m.eta_stk == kind && period.covers(m.tri_stk)), sign);
    return quantities;
}

/// The work of one run.
class Rebuild {
public:
    Rebuild(const Session& session, const Period& period, const Progress& progress)
        : period_(period),
          progress_(progress),
          sales_(session),
          files_(openMovementFiles(workspace_, session)),
          tristk_(workspace_.open(session.path(DataFile::Tristk))) {}

    std::optional<Result> run(const std::function<void(const QString& text)>& step) {
        Transaction transaction(workspace_, Deed);
        Quantities stocks = moved(files_, period_);
        if (!gatherSales()) return std::nullopt;
        step(QStringLiteral("Mise a jour article terminé"));
        add(stocks, tristk_.sumBy(strtristk, strtristk.fac_ref, strtristk.fac_qte), -1);
        if (!write(stocks)) return std::nullopt;
        step(QStringLiteral("Mise a jour article terminé"));
        transaction.commit();
        result_.absentFolders = sales_.absent();
        return result_;
    }

private:
    bool gatherSales() {
        tristk_.remove(strtristk);
        int done = 0;
        for (const Database& file : sales_.all()) {
            if (!progress_(done++, static_cast<int>(sales_.all().size()))) return false;
            result_.lines += gather(file, tristk_, strface, strfacl, period_.covers(strface.tri_datf));
            if (dataFileAt(file.path()) == DataFile::Ostrane) continue; // it has no delivery notes
            result_.lines +=
                gather(file, tristk_, strlive, strlivl,
                       period_.covers(strlive.tri_datf) && strlive.fac_cpt != QString(documents::Transferred));
        }
        return true;
    }

    bool write(const Quantities& stocks) {
        Database molven = files_.molven;
        const auto& a = strarticle;
        const auto followUps = molven.valuesBy(a, a.art_ref, a.art_aig, a.art_aig != follow_up::ByUnit);
        const auto held = molven.valuesBy(a, a.art_ref, a.art_stk, a.art_aig != follow_up::ByUnit);
        int done = 0;
        for (auto article = held.begin(); article != held.end(); ++article) {
            if (!progress_(done++, static_cast<int>(held.size()))) return false;
            const bool isKept = followUps.value(article.key()) == follow_up::ByMovements;
            const Decimal stock = isKept ? stocks.value(article.key().toUpper()).rounded(2) : Decimal();
            if (isKept) ++result_.articles;
            if (!article.value().isEmpty() && Decimal::fromText(article.value()) == stock) continue;
            molven.update(a, {{a.art_stk, stock.toString()}}, a.art_ref == article.key());
            ++result_.changed;
        }
        return true;
    }

    const Period period_;
    const Progress& progress_;
    SalesFiles sales_;
    Workspace workspace_;
    MovementFiles files_;
    Database tristk_;
    Result result_;
};

} // namespace

std::optional<Result> run(const Session& session, const QString& from, const QString& to,
                          const std::function<void(const QString& text)>& step, const Progress& progress) {
    const Period period = typedPeriod(from, to, QStringLiteral("Mskdatdeb"), QStringLiteral("Mskdatfin"),
                                      QStringLiteral("saisir une date"));
    step(QStringLiteral("debut du recalcul"));
    return Rebuild(session, period, progress).run(step);
}

} // namespace molven::stock_rebuild
