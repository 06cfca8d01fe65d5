#include "sales/delivery_exchange.h"

#include "data/require.h"
#include "sales/numbering.h"
#include "stock/immatriculation.h"

namespace molven::delivery_exchange {

Files::Files(const Session& session)
    : molven(workspace.open(session.molven())),
      vente(workspace.open(session.vente())),
      units(openUnitFiles(workspace, session)),
      tripro(workspace.open(session.path(DataFile::Tripro))) {}

void clear(Files& files) { files.tripro.remove(molven::tripro); }

void add(Files& files, const QString& note) {
    const auto header = files.vente.find(strlive, strlive.fac_no == note, strlive.fac_lg);
    require(header.has_value(), QStringLiteral("Bon Livraison inconnu"), QStringLiteral("txtno"));
    const Recordset lines =
        files.vente.select(strlivl, numbering::linesOf(strlivl, header->value(strlive.fac_aa), note), strlivl.fac_lg);
    require(!lines.isEmpty(), QStringLiteral("Aucune ligne sur ce Bon Livraison"), QStringLiteral("txtno"));
    Transaction transaction(files.workspace);
    for (const Record& line : lines) {
        if (line[strlivl.fac_imm].isEmpty()) continue;
        const Immatriculation number = Immatriculation::fromText(line[strlivl.fac_imm]);
        std::optional<Record> unit;
        for (Database file : files.units.all())
            if (!unit) unit = file.find(strproduit, number.criterion());
        if (!unit) continue;
        Record sent(molven::tripro);
        sent.copyFrom(*unit);
        sent[molven::tripro.pro_tar] = line.value(strlivl.fac_ttc);
        sent[molven::tripro.pro_vte] = Decimal(line[strlivl.fac_ht]);
        files.tripro.remove(molven::tripro,
                            molven::tripro.pro_ann == number.century() && molven::tripro.imm_art == number.number());
        files.tripro.insert(sent);
    }
    transaction.commit();
}

QList<Record> chosen(Files& files) {
    QList<Record> units;
    const ProductUnits& u = molven::tripro;
    for (const Record& unit : files.tripro.select(u, {}, {u.num_vte, u.ref_art})) units.append(unit);
    require(!units.isEmpty(), QStringLiteral("Aucun produit sélectionné"), QStringLiteral("txtno"));
    return units;
}

QString clientOf(Files& files, const QString& note) {
    const auto header = files.vente.find(strlive, strlive.fac_no == note);
    return header ? header->value(strlive.fac_clt) : QString();
}

} // namespace molven::delivery_exchange
