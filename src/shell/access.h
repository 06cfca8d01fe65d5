#pragma once

#include "shell/session.h"

namespace molven {

/// The password file and the words it guards. One word for an installation, in CODGES.SVI of the program folder.
namespace access {

/// The word the change screens take as current while the file is missing.
inline const QString InitialWord = QStringLiteral("VELO");

enum class Login {
    Stored, ///< first start: the typed word is now the password, validate again
    Accepted,
    Personalise ///< the built-in word entered: ask for a password of the site's own
};

/// Checks the word typed at login. Throws Refusal "Mot de passe incorrect" on Text1.
Login login(Session& session, const QString& typed);

/// What the two change screens are about; they differ by their words only.
enum class Secret { Password, ManagerCode };

/// The current word, the initial one while the file is missing.
QString current(const Session& session);
/// Throws Refusal unless `typed` is the current word.
void checkCurrent(const Session& session, Secret secret, const QString& typed);
/// Writes the new word when both entries agree and are not empty; throws Refusal otherwise. A manager code also
/// becomes the company code for the rest of the run.
void change(Session& session, Secret secret, const QString& typed, const QString& repeated);

} // namespace access
} // namespace molven
