#pragma once

#include "data/catalogue.h"
#include "shell/company_rules.h"

#include <QString>

namespace molven {

/// The process-wide values, by their own names, handed to whoever needs them. Folders end with a separator.
struct Session {
    QString dossier_app;  ///< program folder, without trailing separator
    QString chemin_base;  ///< data folder of the open dossier
    QString chemin_tri;   ///< work folder
    QString chemin_gv;    ///< second site's folder
    QString chemin_util;  ///< the user's own folder, empty when the dossier has none
    QString code_soc;     ///< company code
    QString mot_dossier;  ///< dossier word or site sub-code
    QString util_dossier; ///< user sub-folder name
    QString code_util;    ///< word typed at login
    QString mot_de_passe; ///< password last validated or saved
    QString mode_ecran;   ///< mode word set by the menu for the screen being opened

    QString spe_cod, spe_nom, spe_pied, spe_mon, spe_btl, spe_cdc, spe_csg, spe_cns, spe_cpt; ///< strspecif

    CompanyRules rules() const { return {code_soc, mot_dossier}; }
    /// Full path of a database file, by its folder rule.
    QString path(DataFile file) const;
    QString molven() const { return path(DataFile::Molven); }
    QString vente() const { return path(DataFile::Vente); }
    QString historic() const { return path(DataFile::Historic); }
    QString tri() const { return path(DataFile::Tri); }
    /// A file of the program folder.
    QString programFile(const QString& name) const { return dossier_app + u'/' + name; }
};

} // namespace molven
