#include "play/player.h"

#include "data/clock.h"
#include "screens/screens.h"
#include "ui/form.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QSaveFile>
#include <QTest>

#include <cstdio>

namespace molven::play {

namespace {
/// Leaves out what the offscreen platform says about itself.
void quietMessages(QtMsgType, const QMessageLogContext&, const QString& message) {
    if (!message.contains(QStringLiteral("propagateSizeHints")) && !message.contains(QStringLiteral("XDG_RUNTIME_DIR")))
        std::fprintf(stderr, "%s\n", qPrintable(message));
}
} // namespace

void useScreen() {
    qInstallMessageHandler(quietMessages);
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(name)) return;
    const QString path = QDir::temp().filePath(QStringLiteral("molven-play-screen.json"));
    QSaveFile screen(path);
    if (screen.open(QIODevice::WriteOnly)) {
        screen.write(
            R"({"screens":[{"name":"play","x":0,"y":0,"width":1280,"height":800,"logicalDpi":96,"logicalBaseDpi":96,"dpr":1.0}]})");
        screen.commit();
    }
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + path.toLocal8Bit());
}

Player::Player(const QString& home, const QString& out) : home_(home), out_(out) {}

Player::~Player() { Clock::set({}); }

const QHash<QString, Player::Word>& Player::vocabulary() {
    static const QHash<QString, Word> words{
        {QStringLiteral("start"), {0, 0, &Player::start}},
        {QStringLiteral("form"), {1, 1, &Player::form}},
        {QStringLiteral("closed"), {1, 1, &Player::closed}},
        {QStringLiteral("menu"), {1, 1, &Player::menu}},
        {QStringLiteral("title"), {1, 1, &Player::title}},
        {QStringLiteral("title~"), {1, 1, &Player::titleHolds}},
        {QStringLiteral("picture"), {1, 1, &Player::picture}},
        {QStringLiteral("set"), {2, 2, &Player::set}},
        {QStringLiteral("key"), {2, 2, &Player::key}},
        {QStringLiteral("press"), {1, 1, &Player::press}},
        {QStringLiteral("shows"), {2, 2, &Player::shows}},
        {QStringLiteral("shows~"), {2, 2, &Player::showsPart}},
        {QStringLiteral("focus"), {1, 1, &Player::focus}},
        {QStringLiteral("enabled"), {1, 1, &Player::enabled}},
        {QStringLiteral("disabled"), {1, 1, &Player::disabled}},
        {QStringLiteral("visible"), {1, 1, &Player::visible}},
        {QStringLiteral("hidden"), {1, 1, &Player::hidden}},
        {QStringLiteral("row"), {2, 2, &Player::row}},
        {QStringLiteral("open"), {2, 2, &Player::open}},
        {QStringLiteral("rows"), {2, 2, &Player::rows}},
        {QStringLiteral("cell"), {4, 4, &Player::cell}},
        {QStringLiteral("answer"), {1, 1, &Player::answer}},
        {QStringLiteral("says"), {1, 1, &Player::says}},
        {QStringLiteral("says~"), {1, 1, &Player::saysPart}},
        {QStringLiteral("silent"), {0, 0, &Player::silent}},
        {QStringLiteral("data"), {3, 3, &Player::data}},
        {QStringLiteral("today"), {1, 1, &Player::today}},
        {QStringLiteral("printed"), {1, 1, &Player::printed}},
        {QStringLiteral("copy"), {2, 2, &Player::copy}},
        {QStringLiteral("remove"), {1, 1, &Player::remove}},
        {QStringLiteral("write"), {2, 2, &Player::write}},
        {QStringLiteral("include"), {1, 1, &Player::include}},
    };
    return words;
}

QString Player::play(const QString& file) {
    files_ = {file};
    line_ = 0;
    QString failure;
    try {
        run(file);
        if (prompt_ && !prompt_->unchecked.isEmpty())
            throw Failure(
                QStringLiteral("aucun message en attente à la fin, trouvé \"%1\"").arg(prompt_->unchecked.head()));
    } catch (const Failure& found) {
        failure = QStringLiteral("%1:%2: %3").arg(files_.last()).arg(line_).arg(found.text);
        if (window_ && !out_.isEmpty())
            window_->grab().save(out_ + u'/' + QFileInfo(file).completeBaseName() + QStringLiteral("-echec.png"));
    }
    window_ = nullptr;
    desk_.reset();
    prompt_ = nullptr;
    Clock::set({});
    return failure;
}

void Player::run(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) throw Failure(QStringLiteral("fichier lisible attendu : %1").arg(path));
    for (const Statement& statement : statements(QString::fromUtf8(file.readAll()))) {
        line_ = statement.line;
        runStatement(statement);
    }
}

void Player::runStatement(const Statement& statement) {
    const auto word = vocabulary().constFind(statement.word);
    if (word == vocabulary().constEnd())
        throw Failure(QStringLiteral("mot connu attendu, trouvé %1").arg(statement.word));
    const auto count = statement.arguments.size();
    if (count < word->fewest || count > word->most)
        throw Failure(
            QStringLiteral("%1 attend %2 valeurs, trouvé %3").arg(statement.word).arg(word->fewest).arg(count));
    (this->*word->run)(statement.arguments);
    settle();
    if (prompt_ && !prompt_->unanswered.isEmpty())
        throw Failure(
            QStringLiteral("réponse prête attendue pour la question \"%1\", aucune trouvée").arg(prompt_->unanswered));
}

/// Lets the program finish what the last key or click began.
void Player::settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

Desk& Player::desk() {
    if (!desk_) throw Failure(QStringLiteral("programme lancé attendu (start)"));
    return *desk_;
}

Form& Player::window() {
    if (!window_ || !window_->isVisible()) throw Failure(QStringLiteral("fenêtre ouverte attendue (form)"));
    return *window_;
}

void Player::start(const QStringList&) {
    auto prompt = std::make_unique<ScriptedPrompt>();
    if (prompt_) prompt->unchecked = prompt_->unchecked; // messages of the run that ends are still to be checked
    desk_.reset();
    auto printer = std::make_unique<KeepingPrinter>(out_);
    prompt_ = prompt.get();
    printer_ = printer.get();
    desk_ = std::make_unique<Desk>(home_, std::move(prompt), std::move(printer));
    startProgram(*desk_);
    window_ = desk_->windows().isEmpty() ? nullptr : desk_->windows().last();
}

void Player::form(const QStringList& arguments) {
    Form* found = nullptr;
    const bool opened = QTest::qWaitFor([&] { return (found = desk().window(arguments[0])) != nullptr; }, PatienceMs);
    if (!opened) {
        QStringList names;
        for (Form* open : desk().windows())
            if (open->isVisible()) names.append(open->objectName());
        throw Failure(QStringLiteral("fenêtre %1 ouverte attendue, ouvertes : %2")
                          .arg(arguments[0], names.join(QStringLiteral(", "))));
    }
    window_ = found;
    found->activateWindow();
    if (!QTest::qWaitForWindowActive(found, PatienceMs))
        throw Failure(QStringLiteral("fenêtre %1 active attendue").arg(arguments[0]));
    // What a window reads beside its user's work is there before it is looked at.
    (void)QTest::qWaitFor([&] { return !found->property("working").toBool(); }, PatienceMs);
}

void Player::closed(const QStringList& arguments) {
    if (!QTest::qWaitFor([&] { return desk().window(arguments[0]) == nullptr; }, PatienceMs))
        throw Failure(QStringLiteral("fenêtre %1 fermée attendue, trouvée ouverte").arg(arguments[0]));
}

QAction* Player::menuEntry(const QString& name) {
    Form* menuWindow = desk().window(QStringLiteral("Tmenu"));
    if (!menuWindow) return nullptr;
    for (QAction* action : menuWindow->findChildren<QAction*>())
        if (action->objectName().compare(name, Qt::CaseInsensitive) == 0) return action;
    return nullptr;
}

namespace {

/// An entry can be chosen when it and every menu above it can.
bool reachable(const QAction* action) {
    if (!action->isEnabled() || !action->isVisible()) return false;
    for (QObject* owner : action->associatedObjects()) {
        const auto* menu = qobject_cast<QMenu*>(owner);
        if (menu && !reachable(menu->menuAction())) return false;
    }
    return true;
}

} // namespace

void Player::menu(const QStringList& arguments) {
    QAction* action = menuEntry(arguments[0]);
    if (!action) throw Failure(QStringLiteral("entrée de menu %1 attendue, aucune").arg(arguments[0]));
    if (!reachable(action))
        throw Failure(QStringLiteral("entrée de menu %1 disponible attendue, trouvée indisponible").arg(arguments[0]));
    action->trigger();
}

void Player::title(const QStringList& arguments) {
    if (window().windowTitle() != arguments[0])
        throw Failure(QStringLiteral("titre \"%1\" attendu, trouvé \"%2\"").arg(arguments[0], window().windowTitle()));
}

void Player::titleHolds(const QStringList& arguments) {
    if (!window().windowTitle().contains(arguments[0]))
        throw Failure(
            QStringLiteral("titre contenant \"%1\" attendu, trouvé \"%2\"").arg(arguments[0], window().windowTitle()));
}

void Player::picture(const QStringList& arguments) {
    Form& shown = window();
    if (out_.isEmpty()) return;
    const QString path = out_ + u'/' + arguments[0] + QStringLiteral(".png");
    if (!shown.grab().save(path)) throw Failure(QStringLiteral("image enregistrée attendue : %1").arg(path));
}

void Player::answer(const QStringList& arguments) {
    static const QHash<QString, bool> known{{QStringLiteral("yes"), true},
                                            {QStringLiteral("ok"), true},
                                            {QStringLiteral("no"), false},
                                            {QStringLiteral("cancel"), false}};
    if (!known.contains(arguments[0]))
        throw Failure(QStringLiteral("yes, no, ok ou cancel attendu, trouvé %1").arg(arguments[0]));
    desk();
    prompt_->answers.enqueue(known.value(arguments[0]));
}

QString Player::nextMessage() {
    desk();
    if (prompt_->unchecked.isEmpty()) return {};
    return prompt_->unchecked.dequeue();
}

void Player::says(const QStringList& arguments) {
    const QString message = nextMessage();
    if (message != arguments[0])
        throw Failure(QStringLiteral("message \"%1\" attendu, trouvé \"%2\"").arg(arguments[0], message));
}

void Player::saysPart(const QStringList& arguments) {
    const QString message = nextMessage();
    if (!message.contains(arguments[0]))
        throw Failure(QStringLiteral("message contenant \"%1\" attendu, trouvé \"%2\"").arg(arguments[0], message));
}

void Player::silent(const QStringList&) {
    desk();
    if (!prompt_->unchecked.isEmpty())
        throw Failure(QStringLiteral("aucun message attendu, trouvé \"%1\"").arg(prompt_->unchecked.head()));
}

void Player::include(const QStringList& arguments) {
    const int line = line_;
    const QString path = QFileInfo(files_.last()).dir().filePath(arguments[0]);
    if (files_.contains(path)) throw Failure(QStringLiteral("%1 s'inclut lui-même").arg(arguments[0]));
    files_.append(path);
    run(path);
    files_.removeLast();
    line_ = line;
}

} // namespace molven::play
