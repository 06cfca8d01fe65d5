#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace molven {

namespace {

QString textOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

QStringList sources() {
    QStringList found;
    QDirIterator files(QStringLiteral(MOLVEN_SOURCES) + QStringLiteral("/src"),
                       {QStringLiteral("*.h"), QStringLiteral("*.cpp")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) found.append(files.next());
    return found;
}

QString relative(const QString& path) {
    return QDir(QStringLiteral(MOLVEN_SOURCES) + QStringLiteral("/src")).relativeFilePath(path);
}

/// What each folder may include, beside itself.
const QHash<QString, QSet<QString>>& allowed() {
    static const QHash<QString, QSet<QString>> folders = [] {
        QHash<QString, QSet<QString>> rules;
        rules[QStringLiteral("data")] = {};
        rules[QStringLiteral("printing")] = {QStringLiteral("data")};
        rules[QStringLiteral("shell")] = {QStringLiteral("data")};
        rules[QStringLiteral("reference")] = {QStringLiteral("data"), QStringLiteral("shell")};
        rules[QStringLiteral("stock")] = {QStringLiteral("data"), QStringLiteral("shell"), QStringLiteral("reference")};
        rules[QStringLiteral("sales")] =
            rules[QStringLiteral("stock")] + QSet<QString>{QStringLiteral("stock"), QStringLiteral("printing")};
        rules[QStringLiteral("accounting")] = rules[QStringLiteral("electronic")] =
            rules[QStringLiteral("sales")] + QSet<QString>{QStringLiteral("sales")};
        rules[QStringLiteral("dossier")] = rules[QStringLiteral("accounting")] +
                                           QSet<QString>{QStringLiteral("accounting"), QStringLiteral("electronic")};
        rules[QStringLiteral("ui")] = rules[QStringLiteral("dossier")] + QSet<QString>{QStringLiteral("dossier")};
        rules[QStringLiteral("screens")] = rules[QStringLiteral("ui")] + QSet<QString>{QStringLiteral("ui")};
        rules[QStringLiteral("app")] = rules[QStringLiteral("screens")] + QSet<QString>{QStringLiteral("screens")};
        return rules;
    }();
    return folders;
}

} // namespace

TEST(Sources, IncludeOnlyDownwards) {
    static const QRegularExpression include(QStringLiteral("^#include \"([a-z_]+)/"),
                                            QRegularExpression::MultilineOption);
    for (const QString& path : sources()) {
        const QString folder = relative(path).section(u'/', 0, 0);
        ASSERT_TRUE(allowed().contains(folder)) << folder.toStdString() << " has no rule";
        auto found = include.globalMatch(textOf(path));
        while (found.hasNext()) {
            const QString target = found.next().captured(1);
            EXPECT_TRUE(target == folder || allowed()[folder].contains(target))
                << relative(path).toStdString() << " includes " << target.toStdString();
        }
    }
}

TEST(Sources, CompareCompanyCodesAndAskTheDateInOnePlaceOnly) {
    static const QRegularExpression company(
        QStringLiteral("(code_soc|company_?|mot_dossier|spe_cod)\\]? *[!=]= *(u|QStringLiteral\\()?\"[A-Z]{2}\""));
    static const QRegularExpression date(
        QStringLiteral("\\b(QDate::currentDate|QDateTime::currentDateTime|std::time)\\b"));
    for (const QString& path : sources()) {
        const QString name = relative(path);
        const QString text = textOf(path);
        EXPECT_FALSE(name != u"shell/company_rules.h" && company.match(text).hasMatch()) << name.toStdString();
        EXPECT_FALSE(name != u"data/clock.cpp" && date.match(text).hasMatch()) << name.toStdString();
    }
}

TEST(Sources, OpenNoTransactionInAScreen) {
    static const QRegularExpression transaction(QStringLiteral("\\bTransaction \\w+[({]"));
    for (const QString& path : sources())
        EXPECT_FALSE(relative(path).startsWith(u"screens/") && transaction.match(textOf(path)).hasMatch())
            << relative(path).toStdString();
}

TEST(Sources, ReplaceFilesInOnePlaceOnly) {
    for (const QString& path : sources())
        EXPECT_FALSE(relative(path) != u"data/safe_file.cpp" && textOf(path).contains(QStringLiteral("QSaveFile")))
            << path.toStdString();
}

TEST(Sources, HaveNoSqlAboveTheDataLayerAndNoWidgetBelowTheWindows) {
    static const QRegularExpression sql(QStringLiteral("\"(select|insert into|update|delete from|pragma) "),
                                        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression widget(
        QStringLiteral("#include <(QWidget|QApplication|QMessageBox|QPushButton|QLineEdit)>"));
    for (const QString& path : sources()) {
        const QString folder = relative(path).section(u'/', 0, 0);
        const bool hasWidgets = folder == u"ui" || folder == u"screens" || folder == u"app";
        EXPECT_FALSE(folder != u"data" && sql.match(textOf(path)).hasMatch()) << path.toStdString();
        EXPECT_FALSE(!hasWidgets && widget.match(textOf(path)).hasMatch()) << path.toStdString();
    }
}

TEST(Sources, SetTheLookInOnePlaceOnly) {
    static const QRegularExpression look(QStringLiteral("setStyleSheet|setPalette|setBold|setContentsMargins|"
                                                        "setMargin\\(|\\bQColor\\(|\\bQFont\\b|setFixedWidth\\(\\d"));
    for (const QString& path : sources()) {
        const QString name = relative(path);
        const bool isScreen = name.startsWith(u"ui/") || name.startsWith(u"screens/");
        if (!isScreen || name == u"ui/style.cpp" || name == u"ui/quiet_style.cpp") continue;
        EXPECT_EQ(look.match(textOf(path)).captured().toStdString(), "") << name.toStdString();
    }
}

} // namespace molven
