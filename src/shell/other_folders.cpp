#include "shell/other_folders.h"

#include "data/catalogue.h"
#include "shell/startup.h"

namespace molven {

OtherFolders::OtherFolders(const Session& session) {
    for (const QString& folder : startup::otherFolders(session))
        for (const DataFile file : {DataFile::Vente, DataFile::Historic}) {
            const QString path = folder + catalogueEntry(file).name;
            if (!Database::exists(path) || Database::canonical(path) == Database::canonical(session.historic()))
                continue;
            connections_.push_back(std::make_unique<Workspace>());
            files_.append(connections_.back()->open(path));
            if (file == DataFile::Historic) archives_.append(files_.last());
        }
}

} // namespace molven
