#include "app/screens/welcome_page.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

namespace {

constexpr int largeHero = 320;
constexpr int smallHero = 120;
constexpr int wordsColumn = 460;
/// What the words need, and what they need with the Gruk over them.
constexpr int smallestHeight = 308;
constexpr int heightForBoth = smallestHeight + smallHero + Measure::medium;
/// What both need side by side.
constexpr int widthForBoth = wordsColumn + largeHero + 2 * Measure::pageMargin + Measure::huge;

Label* line(Theme& theme, TextStyle style, const QString& text)
{
    auto* label = new Label(theme, style);
    label->setText(text);
    label->setWordWrap(true);
    return label;
}

QLayout* promise(Theme& theme, Icon icon, const QString& text)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::medium);
    auto* symbol = new IconLabel(theme, icon, Measure::largeIconSize);
    symbol->setColour(Role::accent);
    row->addWidget(symbol);
    row->addWidget(line(theme, TextStyle::bodyStrong, text), 1);
    return row;
}

}  // namespace

GrukWelcomeView::GrukWelcomeView(AppModel& model, Theme& theme, QWidget* parent)
    : PaperBackdrop(theme, parent), halves_(new QBoxLayout(QBoxLayout::LeftToRight)),
      hero_(new ArtView(theme, Art::grukHero,
                        QStringLiteral("A friendly green Gruk carrying a lantern and disk shield")))
{
    setObjectName(QStringLiteral("welcomePage"));
    halves_->addStretch(1);
    halves_->addLayout(makeWords(model, theme));
    halves_->addWidget(hero_, 0, Qt::AlignVCenter);
    halves_->addStretch(1);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(Measure::pageMargin, Measure::large, Measure::pageMargin,
                             Measure::large);
    rows->addLayout(halves_, 1);
    // How the two stand follows the width, which they must not hold fast.
    rows->setSizeConstraint(QLayout::SetNoConstraint);
}

QSize GrukWelcomeView::minimumSizeHint() const
{
    return {wordsColumn + 2 * Measure::pageMargin, smallestHeight};
}

QBoxLayout* GrukWelcomeView::makeWords(AppModel& model, Theme& theme)
{
    auto* choose =
        new Button(theme, Button::Kind::primary, QStringLiteral("Choose a realm to patrol"));
    choose->setSymbol(Icon::folderAdd);
    connect(choose, &QPushButton::clicked, this, [&model] { model.grantRealm(); });

    auto* titles = new QVBoxLayout;
    titles->setSpacing(0);
    titles->addWidget(line(theme, TextStyle::pageTitle, QStringLiteral("KNOW WHAT GREW.")));
    titles->addWidget(line(theme, TextStyle::pageTitle, QStringLiteral("RECLAIM YOUR REALM.")));
    auto* promises = new QVBoxLayout;
    promises->setSpacing(Measure::medium);
    promises->addLayout(promise(theme, Icon::lock, QStringLiteral("Local metadata only")));
    promises->addLayout(promise(theme, Icon::shieldCheck, QStringLiteral("Review before Trash")));
    promises->addLayout(promise(theme, Icon::noSubscription, QStringLiteral("No subscriptions")));

    auto* column = new QVBoxLayout;
    column->setSpacing(Measure::rowGap);
    column->addStretch(1);
    column->addLayout(titles);
    auto* lead = line(theme, TextStyle::lead,
                      QStringLiteral("Gruk maps a folder, remembers it, then shows you what "
                                     "changed. It never deletes on its own."));
    lead->setFixedWidth(wordsColumn);
    column->addWidget(lead);
    column->addLayout(promises);
    column->addSpacing(Measure::small);
    column->addWidget(choose, 0, Qt::AlignLeft);
    column->addStretch(1);
    return column;
}

void GrukWelcomeView::resizeEvent(QResizeEvent* event)
{
    PaperBackdrop::resizeEvent(event);
    const bool isWide = width() >= widthForBoth;
    const int size = isWide ? largeHero : smallHero;
    hero_->setFixedSize(size, size);
    // Where messages stand over a small page, the words need the room.
    hero_->setVisible(isWide || height() >= heightForBoth);
    // Laid out from the bottom up, the words stand under the Gruk and are still read first.
    halves_->setDirection(isWide ? QBoxLayout::LeftToRight : QBoxLayout::BottomToTop);
    halves_->setSpacing(isWide ? Measure::huge : Measure::medium);
}

}  // namespace gruk
