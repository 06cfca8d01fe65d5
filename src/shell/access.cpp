#include "shell/access.h"

#include "data/errors.h"
#include "shell/folder_files.h"

namespace molven::access {

namespace {

QString passwordFile(const Session& session) { return session.programFile(QStringLiteral("CODGES.SVI")); }

Refusal refused(Secret secret) {
    return Refusal(secret == Secret::Password ? QStringLiteral("Mot de passe incorrect")
                                              : QStringLiteral("Code gestionnaire incorrect"),
                   QStringLiteral("Text1"));
}

} // namespace

Login login(Session& session, const QString& typed) {
    const QString word = typed.trimmed();
    if (word.isEmpty()) throw refused(Secret::Password);
    const auto stored = firstLine(passwordFile(session));
    if (!stored) {
        writeLine(passwordFile(session), word);
        return Login::Stored;
    }
    const CompanyRules rules = session.rules();
    const bool builtIn = rules.acceptsBuiltInWord() && word == u"RZ";
    if (word != *stored && !builtIn) throw refused(Secret::Password);
    session.mot_de_passe = *stored;
    if (rules.passwordIsSiteWord()) session.mot_dossier = word;
    if (rules.acceptsBuiltInWord()) {
        session.mot_de_passe = word;
        session.code_util = word;
    }
    return builtIn ? Login::Personalise : Login::Accepted;
}

QString current(const Session& session) { return firstLine(passwordFile(session)).value_or(InitialWord); }

void checkCurrent(const Session& session, Secret secret, const QString& typed) {
    if (typed.trimmed().isEmpty() || typed.trimmed() != current(session)) throw refused(secret);
}

void change(Session& session, Secret secret, const QString& typed, const QString& repeated) {
    const QString word = typed.trimmed();
    if (word.isEmpty() || word != repeated.trimmed()) throw refused(secret);
    writeLine(passwordFile(session), word);
    session.mot_de_passe = word;
    if (secret == Secret::ManagerCode) session.code_soc = word;
}

} // namespace molven::access
