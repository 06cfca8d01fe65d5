#include "sales/find_anything.h"

#include "data/dates.h"
#include "data/errors.h"
#include "data/format.h"
#include "reference/article_tables.h"
#include "reference/code_kinds.h"
#include "reference/codes.h"
#include "reference/party_tables.h"
#include "sales/documents.h"
#include "stock/stock_tables.h"
#include "stock/supplier_codes.h"
#include "stock/units.h"

#include <algorithm>

namespace molven {

namespace {

using Kind = Finding::Kind;
constexpr int Most = FindAnything::MostOfAKind;

/// Words that are there, one behind the other.
QString joined(QStringList words) {
    words.removeIf([](const QString& word) { return word.trimmed().isEmpty(); });
    return words.join(QStringLiteral(", "));
}

bool isCodeOf(const Finding& finding, const QString& text) {
    return finding.code.compare(text, Qt::CaseInsensitive) == 0 ||
           (finding.kind == Kind::Document && finding.code == padded(text, 6));
}

bool holds(const QList<Finding>& found, const QString& code) {
    return std::any_of(found.begin(), found.end(), [&](const Finding& one) { return one.code == code; });
}

QList<Finding> offered(Kind kind, const QList<codes::Offer>& offers) {
    QList<Finding> found;
    for (const codes::Offer& offer : offers) found.append({kind, offer.code, offer.words});
    return found;
}

} // namespace

FindAnything::FindAnything(const Session& session)
    : session_(session),
      others_(session),
      molven_(workspace_.open(session.molven())),
      vente_(workspace_.open(session.vente())) {
    const auto openIfThere = [&](DataFile file, std::optional<Database>& opened) {
        if (const QString path = session.path(file); workspace_.has(path)) opened = workspace_.open(path);
    };
    openIfThere(DataFile::Historic, historic_);
    openIfThere(DataFile::Proforma, proforma_);
    if (session.rules().hasInvoiceBookChoice()) openIfThere(DataFile::Ostrane, ostrane_);
    if (session.rules().hasAncillarySets()) openIfThere(DataFile::Ancillaire, ancillaire_);
}

QList<Database> FindAnything::unitFiles() const {
    return (historic_ ? QList<Database>{molven_, *historic_} : QList<Database>{molven_}) + others_.archives();
}

QList<Finding> FindAnything::answers(const QString& typed, const QSet<Kind>& wanted) {
    const QString text = typed.trimmed();
    if (text.isEmpty()) return {};
    const auto ask = [&](Kind kind, Findings (FindAnything::*search)(const QString&)) {
        return wanted.contains(kind) ? (this->*search)(text) : Findings();
    };
    if (gs1::isScan(text)) return ask(Kind::Unit, &FindAnything::scanned);
    QList<Findings> groups{ask(Kind::Unit, &FindAnything::units), ask(Kind::Document, &FindAnything::documents),
                           ask(Kind::Client, &FindAnything::clients)};
    if (wanted.contains(Kind::Patient))
        groups.append(distinct(Kind::Patient, strproduit.reg_pat, beginsLike(strproduit.reg_pat, text), {}));
    groups.append(ask(Kind::Article, &FindAnything::articles));
    if (wanted.contains(Kind::Lot))
        groups.append(
            distinct(Kind::Lot, strproduit.lot_art, startsWith(strproduit.lot_art, text), QStringLiteral("Lot de ")));
    groups.append(ask(Kind::Set, &FindAnything::sets));
    groups.append(ask(Kind::SetType, &FindAnything::setTypes));
    groups.append(ask(Kind::Supplier, &FindAnything::suppliers));
    std::stable_partition(groups.begin(), groups.end(), [&](const Findings& group) {
        return std::any_of(group.begin(), group.end(), [&](const Finding& one) { return isCodeOf(one, text); });
    });
    Findings all;
    for (const Findings& group : groups) all += group;
    return all;
}

Finding FindAnything::unit(const Record& record) const {
    const QString where = units::situation(record, session_.rules()).place;
    return {Kind::Unit, record[strproduit.imm_art],
            joined({record[strproduit.ref_art], record[strproduit.pro_li1],
                    record[strproduit.fou_imm].isEmpty() ? QString()
                                                         : QStringLiteral("série ") + record[strproduit.fou_imm],
                    where.simplified()})};
}

QList<Finding> FindAnything::units(const QString& text) {
    Findings found;
    const auto add = [&](Database file, const Criterion& criterion, const Field& order) {
        const int room = Most - static_cast<int>(found.size());
        if (room <= 0) return;
        for (const Record& record : file.first(room, strproduit, criterion, order))
            if (!holds(found, record[strproduit.imm_art])) found.append(unit(record));
    };
    for (Database& file : unitFiles())
        for (const char* century : {"20", "19"})
            add(file, strproduit.pro_ann == QString::fromLatin1(century) && startsWith(strproduit.imm_art, text),
                strproduit.imm_art);
    for (Database& file : unitFiles()) add(file, startsWith(strproduit.fou_imm, text), strproduit.fou_imm);
    return found;
}

/// Units that a supplier's code fits; none for a code that cannot be read, as while it is being typed.
QList<Finding> FindAnything::scanned(const QString& text) {
    Findings found;
    try {
        const SupplierCode code = supplier_codes::read(molven_, text, {});
        const bool isOneOfMany = code.code.lot.isEmpty() && code.code.serial.isEmpty();
        // A lot or a serial leads to few units, an article to very many.
        const Criterion ofArticle =
            isOneOfMany ? strproduit.ref_art == code.reference : trimmed(strproduit.ref_art) == code.reference;
        for (Database& file : unitFiles())
            for (const Record& record : file.first(Most, strproduit, ofArticle && code.fits()))
                found.append(unit(record));
    } catch (const Refusal&) {
    }
    return found;
}

/// The values that begin so, each once, by leaps from one to the next.
QList<Finding> FindAnything::distinct(Kind kind, const Field& field, const Criterion& begins, const QString& noun) {
    Findings found;
    for (Database& file : unitFiles()) {
        Criterion further;
        for (int i = 0; i < Most && found.size() < Most; ++i) {
            const auto next = file.first(1, strproduit, begins && further, field);
            if (next.isEmpty()) break;
            const Record& record = next.first();
            const QString value = record.value(field);
            if (!holds(found, value))
                found.append({kind, value, noun + joined({record[strproduit.ref_art], record[strproduit.pro_li1]})});
            further = field > value;
        }
    }
    return found;
}

QList<Finding> FindAnything::documentsOf(Database file, const DocumentHeaders& table, const QString& text) {
    QList<Record> headers = file.first(Most, table, table.fac_no == padded(text, 6), table.fac_no);
    if (padded(text, 6) != text) headers += file.first(Most, table, startsWith(table.fac_no, text), table.fac_no);
    Findings found;
    for (const Record& header : headers) {
        if (found.size() == Most) break;
        for (const DocumentKind& kind : documentKinds())
            if (&kind.headers == &table && session_.path(kind.file) == file.path() &&
                documents::isOfKind(kind, header)) {
                const QString label = kind.isProforma() ? proformaKind(session_.rules()).label : kind.shownLabel;
                found.append(
                    {Kind::Document, header[table.fac_no],
                     joined({header[table.fac_datf].isEmpty() ? label
                                                              : label + QStringLiteral(" du ") + header[table.fac_datf],
                             header[table.fac_nom]}),
                     &kind});
                break;
            }
    }
    return found;
}

QList<Finding> FindAnything::documents(const QString& text) {
    const bool isNumber =
        text.size() <= 6 && std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
    if (!isNumber) return {};
    Findings found;
    for (const DocumentHeaders* table : QList<const DocumentHeaders*>{&strlive, &strface, &strcsge, &strbtre})
        found += documentsOf(vente_, *table, text);
    if (proforma_) found += documentsOf(*proforma_, strface, text);
    if (ostrane_) found += documentsOf(*ostrane_, strface, text);
    std::stable_partition(found.begin(), found.end(), [&](const Finding& one) { return isCodeOf(one, text); });
    return found.mid(0, 2 * Most);
}

QList<Finding> FindAnything::clients(const QString& text) {
    return offered(Kind::Client, codes::offers(molven_, codes::Client, text, Most));
}

QList<Finding> FindAnything::suppliers(const QString& text) {
    return offered(Kind::Supplier, codes::offers(molven_, codes::Supplier, text, Most));
}

QList<Finding> FindAnything::articles(const QString& text) {
    Findings found;
    const auto add = [&](const Criterion& criterion, const Field& order) {
        for (const Record& record : molven_.first(Most, strarticle, criterion, order))
            if (found.size() < Most && !holds(found, record[strarticle.art_ref]))
                found.append({Kind::Article, record[strarticle.art_ref],
                              joined({record[strarticle.art_li1], record[strarticle.art_li2]})});
    };
    for (const Text* field : {&strarticle.art_ref, &strarticle.art_rfou, &strarticle.art_ean})
        add(startsWith(*field, text), *field);
    add(beginsLike(strarticle.art_li1, text), strarticle.art_li1);
    return found;
}

QList<Finding> FindAnything::sets(const QString& text) {
    Findings found;
    if (!ancillaire_) return found;
    const Criterion heads = strstock.stk_anc_imm_lg == QStringLiteral("000");
    for (const Record& set :
         ancillaire_->first(Most, strstock, startsWith(strstock.stk_anc_imm, text) && heads, strstock.stk_anc_imm))
        found.append({Kind::Set, set[strstock.stk_anc_imm],
                      joined({set[strstock.stk_anc_code], set[strstock.stk_anc_lib], set[strstock.stk_nom_dep]})});
    return found;
}

QList<Finding> FindAnything::setTypes(const QString& text) {
    return ancillaire_ ? offered(Kind::SetType, codes::offers(*ancillaire_, codes::SetType, text, Most)) : Findings();
}

} // namespace molven
