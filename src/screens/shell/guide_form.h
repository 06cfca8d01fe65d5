#pragma once

#include "ui/form.h"

class QTextBrowser;

namespace molven {

/// The users' guide at the page that the mode word names.
class GuideForm : public Form {
public:
    explicit GuideForm(Desk& desk);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void pageShown();

    QTextBrowser* page_;
};

/// Which program, on which engine, on which dossier; from here to the licences of what it is made of.
class AboutForm : public Form {
public:
    explicit AboutForm(Desk& desk);
};

} // namespace molven
