#include "shell/guide.h"

#include <QFile>
#include <QHash>
#include <QImageReader>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace molven::guide {

namespace {

using Screens = QList<std::pair<const char*, const char*>>;

/// The screens that each page explains.
const QHash<QString, QString>& pagesOfScreens() {
    static const QHash<QString, QString> found = [] {
        const Screens screens{
            {"index", "T_guide T_apropos"},
            {"accueil", "Tmenu"},
            {"clavier", "Tcsecret tcmodcs1 Tcodspe1 Tcmodcs2 Tcodspe2"},
            {"codes", "t_cltges t_cltedt T_fouges T_fouedt T_param T_monnaie T_parrgt"},
            {"prix", "T_artges T_artedt T_gencode T_parlpp T_tipslpp T_partips T_partarif T_parrem"},
            {"reception", "T_proges T_lecliv"},
            {"etiquettes", "T_etiedt T_etibarre"},
            {"listes", "T_proedt T_stkedt"},
            {"comptage", "T_invdep"},
            {"quantites", "T_nsvges T_nsvedt T_comptage"},
            {"travaux", "T_procal T_procalns T_utilit"},
            {"tracabilite", "T_traimm T_traimmv T_tracab T_tracabv T_rappel"},
            {"historique", "T_histo"},
            {"ancillaires", "AN_base AN_etat"},
            {"dotations", "T_dotation T_reassort"},
            {"ventes", "T_gestion"},
            {"transferts", "T_btrges"},
            {"proformas", "T_gespro"},
            {"ostrane", "T_ostrane"},
            {"impression", "T_docext T_emetteur T_parfac T_partxt"},
            {"factures-electroniques", "T_facturx"},
            {"archivage", "T_arcdoc T_arcbtr T_arcpro T_reafac T_reabtr T_reapro"},
            {"echanges", "T_livdk T_extract T_dkliv"},
            {"statistiques", "T_staedt"},
            {"commissions", "T_comrep T_partxrep"},
            {"releves", "T_reledt T_echedt"},
            {"comptabilite", "T_trsfac T_plan"},
        };
        QHash<QString, QString> pages;
        for (const auto& [page, names] : screens)
            for (const QString& name : QString::fromLatin1(names).split(u' '))
                pages.insert(name, QString::fromLatin1(page));
        return pages;
    }();
    return found;
}

} // namespace

QUrl addressOf(const QString& page) { return QUrl(QStringLiteral("qrc:/guide/%1.md").arg(page)); }

QStringList pages() {
    static const QRegularExpression link(QStringLiteral("\\]\\(([a-z-]+)\\.md\\)"));
    QStringList names{Contents};
    auto found = link.globalMatch(textOf(Contents));
    while (found.hasNext()) names.append(found.next().captured(1));
    return names;
}

QString textOf(const QString& page) {
    QFile file(QStringLiteral(":/guide/%1.md").arg(page));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString pageOf(const QString& screen, const QString& mode) {
    static const QRegularExpression print(QStringLiteral("^T_(doc|btr)(edt|barre)\\d*$"));
    if (mode == u"REP" && screen == u"T_param") return QStringLiteral("commissions");
    if (mode == u"ANC" && screen == u"T_param") return QStringLiteral("ancillaires");
    const QString page = pagesOfScreens().value(screen);
    return page.isEmpty() && print.match(screen).hasMatch() ? QStringLiteral("impression") : page;
}

void fitPictures(QTextDocument& document, int width) {
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            const QTextFragment fragment = piece.fragment();
            if (!fragment.charFormat().isImageFormat()) continue;
            QTextImageFormat picture = fragment.charFormat().toImageFormat();
            const QSize size = QImageReader(QStringLiteral(":/guide/") + picture.name()).size();
            const int shown = std::min(width, size.width());
            if (shown == qRound(picture.width())) continue;
            picture.setWidth(shown);
            picture.setHeight(1.0 * size.height() * shown / size.width());
            QTextCursor cursor(&document);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(picture);
        }
}

} // namespace molven::guide
