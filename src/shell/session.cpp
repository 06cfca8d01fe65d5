#include "shell/session.h"

namespace molven {

QString Session::path(DataFile file) const {
    const CatalogueEntry& entry = catalogueEntry(file);
    const QString& own = chemin_util.isEmpty() ? chemin_base : chemin_util;
    switch (entry.folder) {
    case Folder::Program:
        return programFile(entry.name);
    case Folder::Base:
        return chemin_base + entry.name;
    case Folder::User:
        return own + entry.name;
    case Folder::Sales:
        return (rules().isSecondSite() ? chemin_gv : own) + entry.name;
    case Folder::Work:
        return chemin_tri + entry.name;
    }
    return {};
}

} // namespace molven
