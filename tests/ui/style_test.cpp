// What the eye must be able to rely on, in both colour schemes.

#include "ui/style.h"

#include "data/clock.h"
#include "reference/party_tables.h"
#include "stock/unit_tables.h"
#include "support/dossier.h"
#include "ui/icons.h"
#include "ui/unit_marks.h"

#include <QPalette>

#include <cmath>

namespace molven {

namespace {

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double one = luminance(a), other = luminance(b);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

class Schemes : public testing::TestWithParam<style::Scheme> {};

} // namespace

TEST_P(Schemes, CanBeReadWhateverStandsOnWhatever) {
    const QPalette palette = style::palette(GetParam());
    using Pair = std::pair<QPalette::ColorRole, QPalette::ColorRole>;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        for (const auto& [words, ground] :
             {Pair(QPalette::WindowText, QPalette::Window), Pair(QPalette::Text, QPalette::Base),
              Pair(QPalette::Text, QPalette::AlternateBase), Pair(QPalette::Text, QPalette::Window),
              Pair(QPalette::ButtonText, QPalette::Button), Pair(QPalette::HighlightedText, QPalette::Highlight),
              Pair(QPalette::PlaceholderText, QPalette::Window), Pair(QPalette::PlaceholderText, QPalette::Base),
              Pair(QPalette::ToolTipText, QPalette::ToolTipBase), Pair(QPalette::Window, QPalette::Link)})
            EXPECT_GE(contrast(palette.color(group, words), palette.color(group, ground)), 4.5)
                << group << ": " << words << " on " << ground;
    for (const auto tone : {style::Tone::Quiet, style::Tone::Good, style::Tone::Away, style::Tone::Done,
                            style::Tone::Warning, style::Tone::Alarm})
        for (const auto ground : {QPalette::Base, QPalette::AlternateBase, QPalette::Window, QPalette::Highlight})
            EXPECT_GE(contrast(style::colour(tone, GetParam()), palette.color(ground)), 4.5)
                << static_cast<int>(tone) << " on " << ground;
}

TEST_P(Schemes, DrawIconsInTheColourOfTheirWords) {
    const auto before = style::scheme();
    style::apply(GetParam());
    const QColor words = style::palette(GetParam()).color(QPalette::ButtonText);
    for (const QIcon& icon : {icons::list(), icons::print(), icons::history(), icons::scan()}) {
        const QImage drawn = icon.pixmap(QSize(64, 64)).toImage().convertToFormat(QImage::Format_ARGB32);
        int dots = 0;
        for (int x = 0; x < drawn.width(); ++x)
            for (int y = 0; y < drawn.height(); ++y) dots += drawn.pixelColor(x, y) == words;
        EXPECT_GT(dots, 64 * 64 / 20);
    }
    style::apply(before);
}

INSTANTIATE_TEST_SUITE_P(All, Schemes, testing::Values(style::Scheme::Light, style::Scheme::Dark));

namespace {

struct MarkedUnit {
    const char *state, *conformity, *expiry, *word;
    style::Tone tone;
};

class UnitMarks : public testing::TestWithParam<MarkedUnit> {
protected:
    UnitMarks() { Clock::set(QDate(2030, 3, 5)); }
    ~UnitMarks() override { Clock::set({}); }
};

} // namespace

TEST_P(UnitMarks, SayWhereAUnitIsOrWhatIsWrongWithIt) {
    Record unit(strproduit);
    unit.set(strproduit.tes_vte, QString::fromUtf8(GetParam().state));
    unit.set(strproduit.fab_con, QString::fromUtf8(GetParam().conformity));
    unit.set(strproduit.dat_per, QString::fromUtf8(GetParam().expiry));
    RecordModel rows({unitStateColumn()});
    rows.setRecords({unit});
    const QModelIndex cell = rows.index(0, 0);
    EXPECT_EQ(rows.data(cell, Qt::DisplayRole).toString(), QString::fromUtf8(GetParam().word));
    EXPECT_EQ(rows.data(cell, Qt::ForegroundRole).value<QColor>(), style::colour(GetParam().tone));
    EXPECT_EQ(rows.text(0, 0), QString::fromUtf8(GetParam().state)) << "what is printed and exported stays the letter";
}

INSTANTIATE_TEST_SUITE_P(All, UnitMarks,
                         testing::Values(MarkedUnit{"N", "O", "12/2031", "En stock", style::Tone::Good},
                                         MarkedUnit{"L", "", "", "Livrée", style::Tone::Away},
                                         MarkedUnit{"A", "", "12/2031", "En ancillaire", style::Tone::Away},
                                         MarkedUnit{"O", "", "02/2030", "Vendue", style::Tone::Done},
                                         MarkedUnit{"N", "", "02/2030", "Périmée", style::Tone::Alarm},
                                         MarkedUnit{"A", "", "02/2030", "Périmée", style::Tone::Alarm},
                                         MarkedUnit{"N", "", "03/2030", "Périme bientôt", style::Tone::Warning},
                                         MarkedUnit{"N", "Z", "02/2030", "Rebutée", style::Tone::Alarm}));

} // namespace molven
