#include "accounting/document_entries.h"
#include "accounting/transfer.h"
#include "data/format.h"
#include "dossier/check/checks.h"
#include "sales/documents.h"
#include "shell/other_folders.h"

namespace molven::check {

namespace {

/// What the entries of one document come to.
struct Entered {
    Decimal debit, credit, client;
    bool isUsed = false;
};

QString nameOf(const QString& year, const QString& number) { return QStringLiteral("facture %1/%2").arg(year, number); }

class EntryCheck {
public:
    EntryCheck(references::Files& files, const Session& session, Faults& faults)
        : files_(files), session_(session), faults_(faults) {}

    void run() {
        readEntries();
        const OtherFolders others(session_);
        for (const Database& file :
             QList<Database>{files_[DataFile::Vente], files_[DataFile::Historic]} + others.files())
            checkDocuments(file);
        for (auto one = entered_.begin(); one != entered_.end(); ++one)
            if (!one->isUsed)
                tell(nameOf(one.key()[1], one.key()[2]), QStringLiteral("écritures sans document transféré"));
    }

private:
    void readEntries() {
        const auto& e = strecrit;
        Database compta = files_[DataFile::Compta];
        const QList<const Field*> document{&e.ecr_ser, &e.ecr_aa, &e.ecr_no};
        for (const Summary& one : compta.summary(e, document, {&e.ecr_deb, &e.ecr_cre})) {
            entered_[one.group] = {one.sums[0], one.sums[1], {}};
            if (one.sums[0] != one.sums[1])
                tell(nameOf(one.group[1], one.group[2]),
                     QStringLiteral("débit %1, crédit %2").arg(amountText(one.sums[0]), amountText(one.sums[1])));
        }
        for (const Summary& one :
             compta.summary(e, document, {&e.ecr_deb, &e.ecr_cre}, startsWith(e.ecr_cpt, ClientAccountStart)))
            entered_[one.group].client = one.sums[0] - one.sums[1];
    }

    void checkDocuments(Database file) {
        const DocumentHeaders& h = strface;
        const QString series = transfer::seriesOf(session_, file.path());
        for (const QStringList& header : file.values(h, {&h.fac_aa, &h.fac_no, &h.fac_ttc, &h.fac_ht},
                                                     h.fac_cpt == QString(documents::Transferred))) {
            const Decimal total = Decimal::fromText(header[2]);
            const auto found = entered_.find({series, header[0], header[1]});
            if (found == entered_.end()) {
                if (!total.isZero() || !Decimal::fromText(header[3]).isZero())
                    tell(nameOf(header[0], header[1]), QStringLiteral("transférée, sans écriture"));
                continue;
            }
            found->isUsed = true;
            if (found->client != total)
                tell(nameOf(header[0], header[1]), QStringLiteral("T.T.C. %1, écriture du client %2")
                                                       .arg(amountText(total), amountText(found->client)));
        }
    }

    void tell(const QString& subject, const QString& text) {
        faults_.append({catalogueEntry(DataFile::Compta).name, subject, text, &kind::Entries});
    }

    references::Files& files_;
    const Session& session_;
    Faults& faults_;
    QHash<QStringList, Entered> entered_;
};

} // namespace

void checkEntries(references::Files& files, const Session& session, Faults& faults) {
    EntryCheck(files, session, faults).run();
}

} // namespace molven::check
