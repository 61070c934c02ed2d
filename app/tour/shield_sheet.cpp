#include "app/tour/shield_sheet.h"

#include <QGridLayout>
#include <QPainter>

#include "app/screens/realm_map_backdrop.h"
#include "app/screens/shield_copy.h"
#include "app/screens/shield_view.h"
#include "app/theme/label.h"

namespace gruk::tour {

namespace {

constexpr int shapes = 4;
constexpr int divisions = 4;
constexpr int charges = 8;
constexpr int shieldSize = 52;
constexpr int sizes[] = {16, 24, Measure::realmRowShield, 40, 64, 96};
constexpr QSize landSize{216, 120};
constexpr const char* realms[] = {"/home/ada/Letters", "/srv/photos", "/home/ada", "/"};

/// Another pair of tinctures for each, through all of them.
RealmIdentity sample(int shape, int division, int charge)
{
    constexpr int tinctures = tinctureCount;
    const int first = (shape * 5 + division * 3 + charge) % tinctures;
    const int second = (first + 1 + (division * charges + charge) % (tinctures - 1)) % tinctures;
    RealmIdentity identity;
    identity.shape = static_cast<FieldShape>(shape);
    identity.division = static_cast<Division>(division);
    identity.primary = static_cast<Tincture>(first);
    identity.secondary = static_cast<Tincture>(second);
    identity.charge = static_cast<Charge>(charge);
    return identity;
}

}  // namespace

ShieldSheet::ShieldSheet(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    auto* blocks = new QGridLayout;
    blocks->setHorizontalSpacing(Measure::huge);
    blocks->setVerticalSpacing(Measure::wide);
    for (int shape = 0; shape < shapes; ++shape) {
        blocks->addLayout(makeBlock(static_cast<FieldShape>(shape)), shape / 2, shape % 2);
    }
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Measure::pageMargin, Measure::pageMargin, Measure::pageMargin,
                               Measure::pageMargin);
    column->setSpacing(Measure::wide);
    column->addLayout(blocks);
    column->addLayout(makeSizes());
    column->addLayout(makeLands());
}

QLayout* ShieldSheet::makeBlock(FieldShape shape)
{
    auto* grid = new QGridLayout;
    grid->setSpacing(Measure::small);
    grid->addWidget(makeLabel(nameOf(shape)), 0, 0, 1, charges);
    for (int division = 0; division < divisions; ++division) {
        for (int charge = 0; charge < charges; ++charge) {
            auto* view =
                new RealmShieldView(theme_, sample(static_cast<int>(shape), division, charge));
            view->setFixedSize(shieldSize, shieldSize);
            grid->addWidget(view, division + 1, charge);
        }
    }
    return grid;
}

QLayout* ShieldSheet::makeSizes()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::medium);
    for (int index = 0; index < shapes; ++index) {
        for (const int size : sizes) {
            if (size > shieldSize && index % 2 == 1) {
                continue;
            }
            auto* view = new RealmShieldView(
                theme_, sample(index, (index + 1) % divisions, (size / 4 + index) % charges));
            view->setFixedSize(size, size);
            row->addWidget(view, 0, Qt::AlignBottom);
        }
    }
    row->addStretch();
    return row;
}

QLayout* ShieldSheet::makeLands()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::large);
    for (const char* path : realms) {
        const RealmIdentity identity = RealmIdentity::derive(path);
        auto* land = new RealmMapBackdrop(theme_, identity);
        land->setFixedSize(landSize);
        auto* content = new QVBoxLayout(land);
        auto* view = new RealmShieldView(theme_, identity);
        view->setFixedSize(shieldSize, shieldSize);
        content->addWidget(view, 0, Qt::AlignCenter);
        row->addWidget(land);
    }
    row->addStretch();
    return row;
}

QWidget* ShieldSheet::makeLabel(const QString& text)
{
    auto* label = new Label(theme_, TextStyle::eyebrow);
    label->setText(text);
    label->setColour(Role::ink, Strength::quiet);
    return label;
}

void ShieldSheet::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), theme_.colour(Role::paper));
}

}  // namespace gruk::tour
