#include "electronic/parties_of_paper.h"

#include "data/require.h"
#include "reference/countries.h"
#include "reference/identifiers.h"
#include "reference/party_tables.h"
#include "reference/seller.h"

#include <QRegularExpression>

namespace molven::electronic {

namespace {

const auto& e = stremetteur;
const auto& c = strclient;

const QString Siren = QStringLiteral("0002"), Siret = QStringLiteral("0009"), Directory = QStringLiteral("0225"),
              Mail = QStringLiteral("EM"), France = QStringLiteral("FR");

constexpr int AddressLines = 3;

bool isInUnion(const QString& country) {
    static const QStringList members =
        QStringLiteral("AT BE BG CY CZ DE DK EE ES FI FR GR HR HU IE IT LT LU LV MT NL PL PT RO SE SI SK").split(u' ');
    return members.contains(country);
}

QString clientNumber(const Record& client) { return identifiers::compact(client[c.clt_nic]); }

} // namespace

Parties::Parties(const Record& identity, const Record& client)
    : identity_(identity),
      client_(client),
      country_(client[c.clt_pays].isEmpty() ? identity[e.emt_pay] : client[c.clt_pays]) {}

bool Parties::isForeign() const { return country_ != identity_[e.emt_pay]; }

void Parties::check() const {
    const auto ofSeller = [this](const Field& field, const char* what) {
        require(
            !identity_.value(field).trimmed().isEmpty(),
            QStringLiteral("Facture électronique : %1 obligatoire (fiche de l'émetteur)").arg(QString::fromUtf8(what)),
            field);
    };
    const auto ofClient = [this](bool holds, const Field& field, const char* what) {
        require(holds,
                QStringLiteral("Facture électronique : %1 du client %2 obligatoire (fiche du client)")
                    .arg(QString::fromUtf8(what), client_[c.clt_cod]),
                field);
    };
    ofSeller(e.emt_nom, "nom");
    if (identity_[e.emt_pay] == France) ofSeller(e.emt_siret, "SIRET");
    ofSeller(e.emt_tva, "N° TVA");
    ofSeller(e.emt_vil, "ville");
    const QString number = clientNumber(client_);
    if (country_ == France && identity_[e.emt_pay] == France)
        ofClient(identifiers::isSiret(number) || identifiers::isSiren(number), c.clt_nic, "SIRET (N° identification)");
    if (isForeign() && isInUnion(country_)) ofClient(!client_[c.clt_tva].isEmpty(), c.clt_tva, "N° TVA");
}

void Parties::checkReason(const Taxation& tax) const {
    if (tax.category == u"E" && tax.reason.isEmpty())
        throw Refusal(QStringLiteral("Facture électronique : motif d'exonération de TVA obligatoire (fiche de "
                                     "l'émetteur)"),
                      e.emt_exo.name);
}

Taxation Parties::taxation(const Decimal& rate) const {
    if (!rate.isZero()) return {QStringLiteral("S"), rate};
    if (!isForeign()) return {QStringLiteral("E"), 0, identity_[e.emt_exo].trimmed()};
    if (isInUnion(country_) && isInUnion(identity_[e.emt_pay]))
        return {QStringLiteral("K"), 0, QStringLiteral("Livraison intracommunautaire"), QStringLiteral("VATEX-EU-IC")};
    return {QStringLiteral("G"), 0, QStringLiteral("Exportation"), QStringLiteral("VATEX-EU-G")};
}

Party Parties::seller() const {
    const QString siren = seller::siren(identity_);
    Party party;
    party.name = identity_[e.emt_nom].trimmed();
    party.vatNumber = identity_[e.emt_tva];
    for (const Label* line : {&e.emt_l1, &e.emt_l2, &e.emt_l3})
        if (const QString text = identity_[*line].trimmed(); !text.isEmpty()) party.lines.append(text);
    party.postcode = identity_[e.emt_cp].trimmed();
    party.town = identity_[e.emt_vil].trimmed();
    party.country = identity_[e.emt_pay];
    party.telephone = identity_[e.emt_tel].trimmed();
    party.mail = identity_[e.emt_mail].trimmed();
    if (siren.isEmpty()) {
        party.address = {Mail, party.mail};
        return party;
    }
    party.id = {Siret, identity_[e.emt_siret]};
    party.legal = {Siren, siren};
    party.address = {Directory, siren};
    return party;
}

Party Parties::buyer(const QStringList& address) const {
    Party party = addressed(address.mid(1));
    party.name = address.value(0);
    party.vatNumber = client_[c.clt_tva];
    party.telephone = client_[c.clt_tel1].trimmed();
    party.mail = client_[c.clt_mail].trimmed();
    const QString number = clientNumber(client_);
    if (identifiers::isSiret(number)) party.id = {Siret, number};
    if (identifiers::isSiret(number) || identifiers::isSiren(number)) party.legal = {Siren, number.left(9)};
    const QString routing = client_[c.clt_rou].trimmed();
    if (!routing.isEmpty())
        party.address = {routing.contains(u'@') ? Mail : Directory, routing};
    else if (!party.id.isEmpty())
        party.address = party.id;
    else if (!party.legal.isEmpty())
        party.address = {Directory, party.legal.value};
    else
        party.address = {Mail, party.mail};
    return party;
}

Party Parties::delivery(const QStringList& address, const QString& buyer) const {
    const bool isBuyer = address.value(0) == buyer;
    Party party = addressed(isBuyer ? address.mid(1) : address);
    party.name = buyer;
    return party;
}

Party Parties::addressed(QStringList lines) const {
    static const QRegularExpression town(QStringLiteral("^([0-9][0-9A-Z-]{2,9}) +(.+)$"));
    Party party;
    party.country = country_;
    if (isForeign() && !lines.isEmpty() && lines.last() == countries::name(country_)) lines.removeLast();
    if (const auto match = town.match(lines.isEmpty() ? QString() : lines.last()); match.hasMatch()) {
        party.postcode = match.captured(1);
        party.town = match.captured(2);
        lines.removeLast();
    }
    while (lines.size() > AddressLines) lines[AddressLines - 1] += QStringLiteral(", ") + lines.takeAt(AddressLines);
    party.lines = lines;
    return party;
}

} // namespace molven::electronic
