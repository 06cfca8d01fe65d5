#include "ui/screen_tabs.h"

#include "ui/form.h"

#include <QMouseEvent>
#include <QScrollArea>
#include <QTabBar>

namespace molven {

namespace {

/// What a screen stands on in its tab: as large as the tab, and never smaller than the screen can be. A layout would
/// ask for what the lists of the screen would like, and push its buttons out of sight.
class Ground : public QWidget {
public:
    explicit Ground(Form& screen) : screen_(&screen) { screen.setParent(this); }
    QSize minimumSizeHint() const override { return screen_ ? screen_->minimumSizeHint() : QSize(); }
    Form* screen() const { return screen_; }

protected:
    void resizeEvent(QResizeEvent*) override {
        if (screen_) screen_->setGeometry(rect());
    }

private:
    QPointer<Form> screen_;
};

Form* screenIn(QWidget* page) {
    const auto* room = qobject_cast<QScrollArea*>(page);
    const auto* ground = room ? dynamic_cast<Ground*>(room->widget()) : nullptr;
    return ground ? ground->screen() : nullptr;
}

} // namespace

ScreenTabs::ScreenTabs(QWidget* home, QWidget* parent) : QTabWidget(parent) {
    setObjectName(QStringLiteral("Onglets"));
    setDocumentMode(true);
    setTabsClosable(true);
    setMovable(false);
    setTabBarAutoHide(true);
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(true);
    tabBar()->setFocusPolicy(Qt::NoFocus);
    tabBar()->installEventFilter(this);
    addTab(home, QStringLiteral("Accueil"));
    for (const auto side : {QTabBar::LeftSide, QTabBar::RightSide}) tabBar()->setTabButton(0, side, nullptr);
    shown_ = home;
    connect(this, &QTabWidget::currentChanged, this, [this] { moveCursor(); });
    connect(this, &QTabWidget::tabCloseRequested, this, [this](int tab) {
        if (Form* screen = screenIn(widget(tab))) screen->close();
    });
}

ScreenTabs::~ScreenTabs() {
    for (int tab = 1; tab < count(); ++tab) // they go with it, one after the other
        if (Form* screen = screenIn(widget(tab))) screen->disconnect(this);
}

void ScreenTabs::add(Form& form) {
    auto* room = new QScrollArea; // a screen may want more room than the main window has
    room->setFrameShape(QFrame::NoFrame);
    room->setFocusPolicy(Qt::NoFocus);
    room->setWidgetResizable(true);
    const QString title = form.windowTitle();
    QWidget* cursor = form.focusWidget();
    room->setWidget(new Ground(form));
    addTab(room, title);
    connect(&form, &QWidget::windowTitleChanged, this,
            [this, room](const QString& changed) { setTabText(indexOf(room), changed); });
    connect(&form, &QObject::destroyed, this, [this, room] {
        removeTab(indexOf(room));
        cursors_.remove(room);
        room->deleteLater();
    });
    form.show();
    setCurrentWidget(room);
    if (cursor) cursor->setFocus();
}

bool ScreenTabs::eventFilter(QObject* watched, QEvent* event) {
    if (watched == tabBar() && event->type() == QEvent::MouseButtonRelease) {
        const auto* click = static_cast<QMouseEvent*>(event);
        const int tab = click->button() == Qt::MiddleButton ? tabBar()->tabAt(click->position().toPoint()) : -1;
        if (tab > 0) tabCloseRequested(tab);
    }
    return QTabWidget::eventFilter(watched, event);
}

/// To where the user left it: a page that goes takes it anywhere.
void ScreenTabs::moveCursor() {
    if (shown_ && shown_ != currentWidget()) cursors_.insert(shown_, shown_->focusWidget());
    shown_ = currentWidget();
    if (QWidget* cursor = cursors_.value(shown_)) cursor->setFocus();
}

Form* ScreenTabs::current() const { return screenIn(currentWidget()); }

int ScreenTabs::tabOf(const Form& form) const {
    for (int tab = 1; tab < count(); ++tab)
        if (widget(tab)->isAncestorOf(&form)) return tab;
    return -1;
}

bool ScreenTabs::bringForward(Form& form) {
    const int tab = tabOf(form);
    if (tab < 0) return false;
    setCurrentIndex(tab);
    if (QWidget* cursor = form.focusWidget()) cursor->setFocus();
    return true;
}

} // namespace molven
