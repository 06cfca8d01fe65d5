// A site at work: so many workstations, each a process, do a realistic mix on one dossier for so many seconds.
//
//   molven-load --home DIR --postes 8 --secondes 30
//
// Prints deeds a second, the slowest of a hundred, what was refused, how often a deed of each kind waited for an answer
// of a server, which a distant one makes cost; the dossier is checked at the end. It works on the
// dossier itself: give it a copy.

#include "data/errors.h"
#include "data/postgres/connection.h"
#include "dossier/check.h"
#include "dossier/creation.h"
#include "reference/parameters.h"
#include "sales/documents.h"
#include "sales/integration.h"
#include "sales/unit_history.h"
#include "stock/receipt.h"
#include "stock/units.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>

using namespace molven;

namespace {

const QString Article = QStringLiteral("CFG001"), Supplier = QStringLiteral("000002");

QString dated() { return QStringLiteral("05/03/2040"); }

/// One workstation: what it does by turns, and how long each took.
class Station {
public:
    Station(const Session& session, int number) : session_(session), chance_(static_cast<quint32>(number) + 1) {
        constexpr int MostAsked = 5000;
        Workspace workspace;
        for (const Record& unit : workspace.open(session.molven()).first(MostAsked, strproduit, {}))
            asked_.append(unit[strproduit.imm_art]);
    }

    void work(int seconds, QTextStream& told) {
        struct Turn {
            int share; ///< of a hundred
            const char* name;
            std::function<void()> deed;
        };
        const QList<Turn> mix{{60, "traçabilité", [this] { enquire(); }},
                              {12, "réception", [this] { receive(); }},
                              {20, "livraison", [this] { deliver(); }},
                              {8, "facture", [this] { invoice(); }}};
        QElapsedTimer since;
        for (since.start(); since.elapsed() < seconds * 1000;) {
            int turn = static_cast<int>(chance_.bounded(100));
            const auto one = std::find_if(mix.begin(), mix.end(), [&](const Turn& t) { return (turn -= t.share) < 0; });
            const qint64 trips = postgres::Connection::roundTrips();
            QElapsedTimer took;
            took.start();
            const QString end = outcome(one->deed);
            told << end << ' ' << took.nsecsElapsed() / 1000 << ' ' << one->name << ' '
                 << postgres::Connection::roundTrips() - trips << '\n';
        }
    }

private:
    static QString outcome(const std::function<void()>& deed) {
        try {
            deed();
            return QStringLiteral("fait");
        } catch (const Refusal&) { // as a user whose unit has just gone
            return QStringLiteral("refus");
        } catch (const DataError& error) {
            return QStringLiteral("faute%1").arg(error.number);
        }
    }

    /// One of the first that are free.
    QString someUnit() {
        Workspace workspace;
        const QList<Record> found = workspace.open(session_.molven())
                                        .first(50, strproduit,
                                               strproduit.ref_art == Article && strproduit.tes_vte == state::InStock &&
                                                   strproduit.num_dep == MainDepot,
                                               strproduit.imm_art);
        if (found.isEmpty()) throw Refusal(QStringLiteral("Plus d'unité"));
        return found[chance_.bounded(static_cast<int>(found.size()))][strproduit.imm_art];
    }

    void enquire() { unit_history::find(session_, asked_[chance_.bounded(static_cast<int>(asked_.size()))]); }

    void receive() {
        Workspace workspace;
        Receipt made;
        made.reference = Article;
        made.supplier = Supplier;
        made.deliveryNumber = QStringLiteral("BL");
        made.deliveryDate = dated();
        made.quantity = QStringLiteral("10");
        made.purchasePrice = QStringLiteral("200");
        made.lot = QStringLiteral("CHARGE");
        made.expiryDate = QStringLiteral("02/2045");
        made.sterilisationDate = QStringLiteral("02/2040");
        receipts::receive(openUnitFiles(workspace, session_), session_.rules(), made);
    }

    void deliver() {
        SalesBook book(session_, documentKind(QStringLiteral("LIV")));
        QStringList units;
        for (int i = 0; i < 3; ++i) units.append(someUnit());
        units.removeDuplicates();
        documents::createWith(book, documents::blank(book, QStringLiteral("000006")), units);
    }

    void invoice() {
        SalesBook book(session_, documentKind(QStringLiteral("FAC")));
        Transaction transaction(book.workspace);
        const Record header = documents::create(book, documents::blank(book, QStringLiteral("000006")));
        Recordset notes = integration::openDeliveryNotes(book, header);
        integration::integrate(book, header, notes[strlive.fac_no]);
        transaction.commit();
    }

    const Session& session_;
    QRandomGenerator chance_;
    QStringList asked_; ///< units that it asks about
};

/// Every line is what became of a deed, its microseconds, its kind and its round trips.
void report(const QStringList& lines, int seconds, QTextStream& out) {
    QMap<QString, qsizetype> outcomes;
    QMap<QString, QList<qint64>> trips;
    QList<qint64> times;
    for (const QString& line : lines) {
        const QStringList words = line.split(u' ');
        ++outcomes[words[0]];
        times.append(words[1].toLongLong());
        if (words[0] == u"fait") trips[words[2]].append(words[3].toLongLong());
    }
    std::sort(times.begin(), times.end());
    out << QStringLiteral("gestes par seconde : %1\n").arg(static_cast<double>(times.size()) / seconds, 0, 'f', 1);
    if (!times.isEmpty())
        out << QStringLiteral("le plus lent de cent : %1 ms, le plus lent : %2 ms\n")
                   .arg(times[times.size() * 99 / 100] / 1000)
                   .arg(times.last() / 1000);
    for (auto one = outcomes.begin(); one != outcomes.end(); ++one)
        out << QStringLiteral("%1 : %2\n").arg(one.key()).arg(one.value());
    for (auto one = trips.begin(); one != trips.end(); ++one) {
        std::sort(one->begin(), one->end());
        out << QStringLiteral("allers et retours, %1 : %2\n").arg(one.key()).arg(one->at(one->size() / 2));
    }
}

/// 0 for a sound dossier, 1 for another, 2 for one that cannot be read: its server may be down.
int checked(const QString& home, QTextStream& out) {
    try {
        const auto faults = check::run(creation::open(home));
        for (const check::Fault& fault : faults)
            out << fault.file << " : " << fault.subject << " : " << fault.text << '\n';
        out << (faults.isEmpty() ? QStringLiteral("dossier sain\n")
                                 : QStringLiteral("défauts : %1\n").arg(faults.size()));
        return faults.isEmpty() ? 0 : 1;
    } catch (const std::exception& fault) {
        out << QStringLiteral("le dossier n'a pas pu être vérifié : ") << QString::fromUtf8(fault.what()) << '\n';
        return 2;
    }
}

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions(
        {{QStringLiteral("home"), QStringLiteral("dossier du programme"), QStringLiteral("DIR")},
         {QStringLiteral("postes"), QStringLiteral("postes"), QStringLiteral("N"), QStringLiteral("8")},
         {QStringLiteral("secondes"), QStringLiteral("durée"), QStringLiteral("S"), QStringLiteral("30")}});
    parser.process(application);
    const int stations = parser.value(QStringLiteral("postes")).toInt();
    const int seconds = parser.value(QStringLiteral("secondes")).toInt();
    const QTemporaryDir folder;
    std::vector<pid_t> processes;
    for (int number = 0; number < stations; ++number) {
        const pid_t child = fork(); // before anything is opened: a connection is one process's own
        if (child != 0) {
            processes.push_back(child);
            continue;
        }
        const Session session = creation::open(parser.value(QStringLiteral("home")));
        QFile file(folder.filePath(QString::number(number)));
        if (!file.open(QIODevice::WriteOnly)) _exit(1);
        QTextStream told(&file);
        Station(session, number).work(seconds, told);
        told.flush();
        file.close();
        _exit(0);
    }
    QTextStream out(stdout);
    QStringList lines;
    for (int number = 0; number < stations; ++number) {
        int status = 0;
        waitpid(processes[static_cast<std::size_t>(number)], &status, 0);
        if (status != 0) out << QStringLiteral("le poste %1 a fini par %2\n").arg(number).arg(status);
        QFile file(folder.filePath(QString::number(number)));
        if (file.open(QIODevice::ReadOnly)) lines += QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }
    report(lines, seconds, out);
    return checked(parser.value(QStringLiteral("home")), out);
}
