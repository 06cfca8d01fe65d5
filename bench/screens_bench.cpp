#include "bench.h"

#include "screens/screens.h"
#include "ui/form.h"

#include <QApplication>

#include <cstdio>

namespace molven::bench {

namespace {

/// Nobody is there to answer; what a screen says while it opens is shown, since it would have to wait for it.
class Bystander : public Prompt {
public:
    void tell(const QString& text, const QString&, Icon) override { std::printf("told: %s\n", qPrintable(text)); }
    bool ask(const QString&, const QString&, Icon) override { return false; }
    bool confirm(const QString&, const QString&) override { return false; }
};

class NoPaper : public PrintTarget {
public:
    bool print(const PrintJob&) override { return false; }
};

/// From the menu entry chosen to the window painted, and what it lists read.
void openScreen(benchmark::State& state, const char* name, const char* mode) {
    Desk desk(session().dossier_app, std::make_unique<Bystander>(), std::make_unique<NoPaper>());
    desk.session = session();
    addScreens(desk);
    for (auto _ : state) {
        Form* form = desk.open(QString::fromLatin1(name), QString::fromLatin1(mode));
        QApplication::processEvents();
        form->grab();
        state.PauseTiming();
        delete form;
        state.ResumeTiming();
    }
}

} // namespace

void registerScreens() {
    const std::pair<const char*, const char*> screens[] = {
        {"Tmenu", ""},    {"t_cltges", ""},     {"T_artges", ""},     {"T_proges", ""},    {"T_proedt", ""},
        {"T_stkedt", ""}, {"T_gestion", "LIV"}, {"T_gestion", "FAC"}, {"T_btrges", "BTR"}, {"T_traimm", ""}};
    for (const auto& [name, mode] : screens)
        add(
            std::string("opening_") + name + mode,
            [name = name, mode = mode](benchmark::State& state) { openScreen(state, name, mode); }, 5);
}

} // namespace molven::bench
