#pragma once

#include "play/stand_ins.h"
#include "screens/screens.h"
#include "support/dossier.h"
#include "ui/desk.h"

#include <memory>

namespace molven::test {

/// The program on a dossier, every screen ready to be opened, with a user who answers as told and a printer that keeps.
inline std::unique_ptr<Desk> deskOn(const Dossier& dossier) {
    auto desk = std::make_unique<Desk>(dossier.folder(), std::make_unique<play::ScriptedPrompt>(),
                                       std::make_unique<play::KeepingPrinter>(QString()));
    desk->session = dossier.session;
    addScreens(*desk);
    return desk;
}

/// What its user heard and answers.
inline play::ScriptedPrompt* userOf(Desk& desk) { return dynamic_cast<play::ScriptedPrompt*>(&desk.prompt()); }

} // namespace molven::test
