#include "ui/screen_tabs.h"

#include "ui/form.h"

#include <QScrollArea>
#include <QTabBar>

namespace molven {

ScreenTabs::ScreenTabs(QWidget* home, QWidget* parent) : QTabWidget(parent) {
    setObjectName(QStringLiteral("Onglets"));
    setDocumentMode(true);
    setTabsClosable(true);
    setMovable(false);
    setTabBarAutoHide(true);
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(true);
    tabBar()->setFocusPolicy(Qt::NoFocus);
    addTab(home, QStringLiteral("Accueil"));
    for (const auto side : {QTabBar::LeftSide, QTabBar::RightSide}) tabBar()->setTabButton(0, side, nullptr);
    shown_ = home;
    connect(this, &QTabWidget::currentChanged, this, [this] { moveCursor(); });
    connect(this, &QTabWidget::tabCloseRequested, this, [this](int tab) {
        if (const auto* room = qobject_cast<QScrollArea*>(widget(tab))) room->widget()->close();
    });
}

ScreenTabs::~ScreenTabs() {
    for (int tab = 1; tab < count(); ++tab) // they go with it, one after the other
        if (const auto* room = qobject_cast<QScrollArea*>(widget(tab))) room->widget()->disconnect(this);
}

void ScreenTabs::add(Form& form) {
    auto* room = new QScrollArea; // a screen may want more room than the main window has
    room->setFrameShape(QFrame::NoFrame);
    room->setFocusPolicy(Qt::NoFocus);
    room->setWidgetResizable(true);
    const QString title = form.windowTitle();
    QWidget* cursor = form.focusWidget();
    room->setWidget(&form);
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

/// To where the user left it: a page that goes takes it anywhere.
void ScreenTabs::moveCursor() {
    if (shown_ && shown_ != currentWidget()) cursors_.insert(shown_, shown_->focusWidget());
    shown_ = currentWidget();
    if (QWidget* cursor = cursors_.value(shown_)) cursor->setFocus();
}

Form* ScreenTabs::current() const {
    const auto* room = qobject_cast<QScrollArea*>(currentWidget());
    return room ? Form::of(room->widget()) : nullptr;
}

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
