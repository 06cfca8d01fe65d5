#include "accounting/transfer.h"

#include "data/clock.h"
#include "data/dates.h"
#include "data/format.h"
#include "data/require.h"
#include "data/server_address.h"
#include "sales/document_tables.h"
#include "sales/documents.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>

namespace molven::transfer {

namespace {

Criterion waiting(const QString& until, const Expression& date, const Expression& state) {
    return date <= until && state != documents::Transferred;
}

/// Goes through the waiting documents in the order of their dates and numbers, and hands their entries over.
class Preparation {
public:
    Preparation(const Files& files, const QString& until)
        : files_(files),
          entries_(files.lines.molven, files.lines.compta, files.lines.carriage, files.lines.currency),
          hash_(QCryptographicHash::Sha256) {
        control_.until = until;
        number_ = files_.lines.compta.greatest(strecrit, strecrit.ecr_num).toLongLong();
    }

    template <class Take>
    Control run(const Take& take, const Progress& progress) {
        const Criterion inLines = waiting(control_.until, sales_statistics::ofHeader(strface.tri_datf),
                                          sales_statistics::ofHeader(strface.fac_cpt));
        sales_statistics::fill(files_.lines, statdt, inLines);
        for (Database file : {files_.lines.vente, files_.lines.historic}) {
            const Recordset headers = file.select(strface, waiting(control_.until, strface.tri_datf, strface.fac_cpt),
                                                  {strface.tri_datf, strface.fac_aa, strface.fac_no});
            for (const Record& header : headers) {
                tell(progress, control_.documents + control_.leftOut.size(), headers.count());
                prepare(header, take);
            }
        }
        control_.fingerprint = hash_.result();
        return control_;
    }

private:
    template <class Take>
    void prepare(const Record& header, const Take& take) {
        try {
            const QList<Record> lines = entries_.of(header, partsOf(header));
            ++control_.documents;
            if (!lines.isEmpty()) ++number_;
            for (const Record& line : lines) add(line, take);
        } catch (const Refusal& refusal) {
            control_.leftOut.append({header[strface.fac_aa], header[strface.fac_no],
                                     header[strface.fac_clt] + u' ' + header[strface.fac_nom], refusal.text});
        }
    }

    template <class Take>
    void add(Record line, const Take& take) {
        line[strecrit.ecr_num] = QString::number(number_).rightJustified(strecrit.ecr_num.size, u'0');
        line[strecrit.ecr_ser] = files_.series;
        for (const Field* field : strecrit.fields()) hash_.addData(line.value(*field).toUtf8() + '\n');
        ++control_.entries;
        control_.debit += line[strecrit.ecr_deb];
        control_.credit += line[strecrit.ecr_cre];
        take(line);
    }

    /// The parts of a page of documents are read at once.
    QList<DocumentEntries::Part> partsOf(const Record& header) {
        const QString key = header[strface.fac_aa] + u'/' + header[strface.fac_no];
        if (!parts_) readParts();
        return parts_->value(key);
    }

    void readParts() {
        parts_.emplace();
        const auto& s = statdt;
        for (const Summary& one : files_.lines.tri.summary(s, {&s.sta_aa, &s.sta_no, &s.sta_vte, &s.sta_tva},
                                                           {&s.sta_net, &s.sta_ht, &s.sta_ttc}))
            (*parts_)[one.group[0] + u'/' + one.group[1]].append(
                {one.group[2], one.group[3], one.sums[0], one.sums[2] - one.sums[1]});
    }

    Files files_;
    DocumentEntries entries_;
    QCryptographicHash hash_;
    Control control_;
    qint64 number_ = 0;
    std::optional<QHash<QString, QList<DocumentEntries::Part>>> parts_;
};

QString untilOf(const QString& typed) {
    const QString box = QStringLiteral("Mskdatfin");
    require(!isEmptyDate(typed), QStringLiteral("date obligatoire"), box);
    require(dateFromText(typed).isValid(), QStringLiteral("date fin non valide"), box);
    return sortKey(typed);
}

/// The documents of which entries were written, and those that come to nothing.
void markTransferred(Files& files, const Control& control) {
    QStringList left;
    for (const LeftOut& one : control.leftOut) left.append(one.year + one.number);
    for (Database file : {files.lines.vente, files.lines.historic})
        file.update(strface, {{strface.fac_cpt, documents::Transferred}},
                    waiting(control.until, strface.tri_datf, strface.fac_cpt) &&
                        !isOneOf(strface.fac_aa + strface.fac_no, left));
}

} // namespace

QString seriesOf(const Session& session, const QString& documentsFile) {
    if (server_address::isOne(documentsFile)) {
        const QString place = server_address::folderOf(documentsFile);
        if (place == session.chemin_base) return {};
        return place == session.chemin_gv ? QStringLiteral("GV") : place.chopped(1).section(u'/', -1).section(u'#', -1);
    }
    const auto canonical = [](const QString& folder) { return QFileInfo(folder + u'.').canonicalFilePath(); };
    const QString folder = QFileInfo(documentsFile).canonicalPath();
    if (folder == canonical(session.chemin_base)) return {};
    if (!session.chemin_gv.isEmpty() && folder == canonical(session.chemin_gv)) return QStringLiteral("GV");
    return QFileInfo(folder).fileName();
}

Files openFiles(Workspace& workspace, const Session& session) {
    return {sales_statistics::openFiles(workspace, session), seriesOf(session, session.vente())};
}

Control control(Files files, const QString& until, const Progress& progress) {
    const QString day = untilOf(until);
    Transaction transaction(files.lines.compta.workspace(), {}, Locks::none());
    files.lines.tri.remove(strecrit);
    const Control found =
        Preparation(files, day).run([&](const Record& line) { files.lines.tri.insert(line); }, progress);
    require(found.documents > 0 || !found.leftOut.isEmpty(), QStringLiteral("aucune facture sélectionnée"),
            QStringLiteral("Mskdatfin"));
    transaction.commit();
    return found;
}

QString run(Files files, const Control& controlled, const Progress& progress) {
    Transaction transaction(files.lines.compta.workspace(), QStringLiteral("Transfert en comptabilité"));
    const qint64 last = files.lines.compta.greatest(strecrit, strecrit.ecr_trf).toLongLong();
    const QString number = QString::number(last + 1).rightJustified(strecrit.ecr_trf.size, u'0');
    const QString day = sortKey(Clock::today());
    const Control now = Preparation(files, controlled.until)
                            .run(
                                [&](Record line) {
                                    line[strecrit.ecr_trf] = number;
                                    line[strecrit.ecr_jtr] = day;
                                    files.lines.compta.insert(line);
                                },
                                progress);
    require(now.fingerprint == controlled.fingerprint && now.documents == controlled.documents,
            QStringLiteral("Les factures ont changé depuis le contrôle : contrôler de nouveau"),
            QStringLiteral("Mskdatfin"));
    markTransferred(files, now);
    transaction.commit();
    return number;
}

QList<Past> past(Database compta) {
    QList<Past> found;
    for (const Summary& one : compta.summary(strecrit, {&strecrit.ecr_trf, &strecrit.ecr_jtr}, {&strecrit.ecr_deb}))
        found.prepend({one.group[0], one.group[1], one.count, one.sums[0]});
    return found;
}

} // namespace molven::transfer
