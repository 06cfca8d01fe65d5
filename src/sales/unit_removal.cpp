#include "sales/unit_removal.h"

#include "data/errors.h"
#include "sales/document_tables.h"
#include "shell/other_folders.h"
#include "stock/depot_tables.h"
#include "stock/labels.h"
#include "stock/stock_tables.h"
#include "stock/units.h"

#include <algorithm>

namespace molven::unit_removal {

namespace {

struct Papers {
    DataFile file;
    QList<const DocumentLines*> lines;
};

/// Every file with documents that may name a unit.
const QList<Papers>& papers() {
    static const QList<const DocumentLines*> all{&strlivl, &strfacl, &strcsgl, &strbtrl};
    static const QList<Papers> files{{DataFile::Vente, all},
                                     {DataFile::Historic, all},
                                     {DataFile::Proforma, {&strfacl}},
                                     {DataFile::Ostrane, {&strfacl}},
                                     {DataFile::Virtuel, {&strlivl, &strfacl, &strbtrl}}};
    return files;
}

bool isOn(const Papers& some, Database file, const QString& unit) {
    return std::any_of(some.lines.begin(), some.lines.end(),
                       [&](const DocumentLines* lines) { return file.count(*lines, lines->fac_imm == unit) > 0; });
}

} // namespace

void remove(const Session& session, const Immatriculation& unit) {
    Workspace workspace;
    Database molven = workspace.open(session.molven());
    QList<Database> files;
    for (const Papers& some : papers()) files.append(workspace.open(session.path(some.file)));
    Database ancillaire = workspace.open(session.path(DataFile::Ancillaire));
    Database tri = workspace.open(session.tri());

    Transaction transaction(workspace);
    const auto read = units::find(molven, unit);
    units::remove(molven, unit);
    bool named = ancillaire.count(strstock, strstock.stk_imm_art == unit.number()) > 0 ||
                 molven.count(strinvlig, strinvlig.lig_imm == unit.number()) > 0;
    for (qsizetype i = 0; i < files.size(); ++i) named = named || isOn(papers()[i], files[i], unit.number());
    const OtherFolders others(session);
    for (const Database& file : others.files()) named = named || isOn(papers().first(), file, unit.number());
    if (named)
        throw Refusal(QStringLiteral("impossible de supprimer cette immatriculation"), QStringLiteral("txtrecimm"));
    labels::discard(tri, session.rules(), *read);
    transaction.commit();
}

} // namespace molven::unit_removal
