#include "ui/upgrade_display.h"

#include "ui/style.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QThread>
#include <QVBoxLayout>

#include <memory>

namespace molven {

namespace {

constexpr int DisplayedAfterMs = 500, DisplayedEveryMs = 50;

/// A display without a way out: a file is brought up to date or not opened.
class UpgradeDisplay : public QDialog {
public:
    explicit UpgradeDisplay(const QString& path) : QDialog(QApplication::activeWindow()), bar_(new QProgressBar(this)) {
        setWindowTitle(QStringLiteral("Mise à jour du dossier"));
        setWindowModality(Qt::ApplicationModal);
        auto* layout = new QVBoxLayout(this);
        style::letBreathe(*layout);
        layout->addWidget(new QLabel(
            QStringLiteral("%1 vient d'une version précédente du programme, mise à jour en cours").arg(path), this));
        layout->addWidget(bar_);
        begun_.start();
    }

    void tell(int done, int total) {
        bar_->setMaximum(total);
        bar_->setValue(done);
        if (begun_.elapsed() >= DisplayedAfterMs) show();
    }

    void reject() override {}

protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }

private:
    QProgressBar* bar_;
    QElapsedTimer begun_;
};

/// One upgrade, told by the thread that is at it. The display lives in the thread of the windows, which is not waited
/// for: it may be waiting for this one to end.
class ShownUpgrade {
public:
    explicit ShownUpgrade(const QString& path) {
        inWindows([display = display_, path] { *display = new UpgradeDisplay(QFileInfo(path).fileName()); });
    }
    ~ShownUpgrade() {
        inWindows([display = display_] { delete *display; });
    }
    ShownUpgrade(const ShownUpgrade&) = delete;
    ShownUpgrade& operator=(const ShownUpgrade&) = delete;

    void tell(int done, int total) {
        if (told_.isValid() && told_.elapsed() < DisplayedEveryMs) return;
        told_.start();
        inWindows([display = display_, done, total] {
            if (*display) (*display)->tell(done, total);
        });
        const bool isInWindows = QThread::currentThread() == qApp->thread();
        if (isInWindows && *display_ && (*display_)->isVisible()) QCoreApplication::processEvents();
    }

private:
    template <class Work>
    static void inWindows(const Work& work) {
        QMetaObject::invokeMethod(qApp, work, Qt::AutoConnection);
    }

    /// Goes with the window that it stands over.
    const std::shared_ptr<QPointer<UpgradeDisplay>> display_ = std::make_shared<QPointer<UpgradeDisplay>>();
    QElapsedTimer told_;
};

} // namespace

Progress upgradeDisplay(const QString& path) {
    return [shown = std::make_shared<ShownUpgrade>(path)](int done, int total) {
        shown->tell(done, total);
        return true;
    };
}

} // namespace molven
