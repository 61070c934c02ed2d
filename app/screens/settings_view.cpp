#include "app/screens/settings_view.h"

#include <exception>

#include <QButtonGroup>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "app/model/setting_keys.h"
#include "app/screens/memory_card.h"
#include "app/screens/palette_row.h"
#include "app/screens/review_only_panel.h"
#include "app/screens/section_title.h"
#include "app/screens/window_memory.h"
#include "app/theme/accessible.h"
#include "app/theme/art.h"
#include "app/theme/focus_ring.h"
#include "app/theme/label.h"
#include "app/theme/layouts.h"
#include "app/theme/segmented_control.h"
#include "app/theme/tab_bar.h"
#include "app/theme/toggle.h"

namespace gruk {

namespace {

constexpr QSize usualSize(560, 744);
constexpr QSize smallestSize(480, 360);

/// A page that scrolls where the window is too small for it.
QWidget* scrolling(QWidget* page)
{
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidgetResizable(true);
    area->setWidget(page);
    // What lies under it is paper, with its grain.
    page->setAutoFillBackground(false);
    area->viewport()->setAutoFillBackground(false);
    return area;
}

QWidget* makePage(QVBoxLayout*& column)
{
    auto* page = new QWidget;
    column = columnIn(page, Measure::rowGap);
    column->setContentsMargins(Measure::pageMargin, Measure::hair, Measure::pageMargin,
                               Measure::pageMargin);
    return page;
}

}  // namespace

SettingsView::SettingsView(AppModel& model, Theme& theme, QWidget* parent)
    : PaperBackdrop(theme, parent), model_(model), theme_(theme)
{
    setWindowFlag(Qt::Window);
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Settings"));
    setMinimumSize(smallestSize);
    resize(sizeWithin(usualSize, screen()->availableSize()));

    auto* tabs = new TabBar(theme_, QStringLiteral("Settings"));
    auto* pages = new QStackedWidget;
    tabs->add(Icon::gear, QStringLiteral("General"));
    pages->addWidget(makeGeneral());
    tabs->add(Icon::history, QStringLiteral("Automations"));
    pages->addWidget(makeAutomations());
    auto* column = columnIn(this, Measure::medium);
    column->setContentsMargins(0, Measure::large, 0, 0);
    column->addWidget(tabs, 0, Qt::AlignHCenter);
    column->addWidget(pages, 1);
    new FocusRing(theme_, *this);

    connect(tabs, &QTabBar::currentChanged, pages, &QStackedWidget::setCurrentIndex);
    for (const QKeySequence& keys :
         {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)}) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, &QWidget::close);
    }
    const auto recolour = [this] { setPalette(theme_.windowPalette()); };
    connect(&theme_, &Theme::changed, this, recolour);
    recolour();
}

QWidget* SettingsView::makeGeneral()
{
    QVBoxLayout* column = nullptr;
    QWidget* page = makePage(column);
    column->addWidget(new ReviewOnlyPanel(model_, theme_));
    column->addWidget(makeStartCard());
    memory_ = new MemoryCard(model_, theme_);
    column->addWidget(memory_);
    column->addWidget(makeAppearanceCard());
    column->addStretch(1);
    return scrolling(page);
}

QWidget* SettingsView::makeStartCard()
{
    auto* card = new Card(theme_);
    auto* starts = new Toggle(theme_, QStringLiteral("Start Gruk when you log in"));
    again_ =
        new Button(theme_, Button::Kind::secondary, QStringLiteral("Show the walkthrough again"));
    walkthroughNote_ =
        sectionNote(theme_, QStringLiteral("It opens the next time the main window appears."));
    auto* column = columnIn(card, Measure::small);
    column->addWidget(starts);
    column->addWidget(sectionNote(
        theme_, QStringLiteral("The menu-bar Gruk keeps watch without the window open.")));
    column->addSpacing(Measure::small);
    column->addWidget(again_);
    column->addWidget(walkthroughNote_);

    const auto showModel = [this, starts] { starts->setChecked(model_.launchAtLogin()); };
    connect(starts, &QAbstractButton::clicked, this, [this, showModel](bool isWanted) {
        model_.setLaunchAtLogin(isWanted);
        // Where that failed, the switch goes back.
        showModel();
    });
    connect(&model_, &AppModel::launchAtLoginChanged, this, showModel);
    connect(again_, &QPushButton::clicked, this, &SettingsView::showWalkthroughAgain);
    showModel();
    showWhenWalkthroughComes();
    return card;
}

void SettingsView::showEvent(QShowEvent* event)
{
    PaperBackdrop::showEvent(event);
    showWhenWalkthroughComes();
    memory_->refresh();
}

void SettingsView::changeEvent(QEvent* event)
{
    // It may have been seen meanwhile, in the other window.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        showWhenWalkthroughComes();
    }
    PaperBackdrop::changeEvent(event);
}

void SettingsView::showWhenWalkthroughComes()
{
    const bool comes =
        !model_.preferences().boolean(SettingKeys::hasSeenWalkthrough).value_or(true);
    walkthroughNote_->setVisible(comes);
    again_->setAccessibleDescription(comes ? walkthroughNote_->text() : QString());
}

void SettingsView::showWalkthroughAgain()
{
    try {
        model_.preferences().setBoolean(SettingKeys::hasSeenWalkthrough, false);
    } catch (const std::exception& error) {
        qWarning("Gruk: failed to forget the walkthrough: %s", error.what());
    }
    showWhenWalkthroughComes();
}

QWidget* SettingsView::makeAppearanceCard()
{
    auto* card = new Card(theme_);
    auto* schemes = new SegmentedControl(
        theme_, {label(AppTheme::system), label(AppTheme::light), label(AppTheme::dark)},
        QStringLiteral("Appearance"));
    schemes->setCurrent(static_cast<int>(theme_.appTheme()));
    auto* palettes = new QButtonGroup(card);
    auto* column = columnIn(card, Measure::small);
    column->addWidget(sectionTitle(theme_, QStringLiteral("Appearance")));
    column->addWidget(schemes);
    column->addSpacing(Measure::small);
    auto* colours = new Label(theme_, TextStyle::lead);
    setAccessibleRole(*colours, QAccessible::Heading);
    colours->setText(QStringLiteral("Colours"));
    column->addWidget(colours);
    for (std::size_t index = 0; index < paletteThemeCount; ++index) {
        auto* row = new PaletteRow(theme_, static_cast<AppPaletteTheme>(index));
        row->setAccessibleDescription(QStringLiteral("Colours"));
        palettes->addButton(row, static_cast<int>(index));
        column->addWidget(row);
    }
    palettes->button(static_cast<int>(theme_.paletteTheme()))->setChecked(true);
    column->addWidget(sectionNote(
        theme_, QStringLiteral("Pick the Gruk's colours. Every shield repaints to match — nothing "
                               "about a realm's identity changes, just what its colours mean right "
                               "now.")));

    connect(schemes, &SegmentedControl::currentChanged, this,
            [this](int index) { theme_.setAppTheme(static_cast<AppTheme>(index)); });
    connect(palettes, &QButtonGroup::idToggled, this, [this](int index, bool isChosen) {
        if (isChosen) {
            theme_.setPaletteTheme(static_cast<AppPaletteTheme>(index));
        }
    });
    connect(&theme_, &Theme::changed, card, [this, schemes, palettes] {
        schemes->setCurrent(static_cast<int>(theme_.appTheme()));
        palettes->button(static_cast<int>(theme_.paletteTheme()))->setChecked(true);
    });
    return card;
}

QWidget* SettingsView::makeAutomations()
{
    QVBoxLayout* column = nullptr;
    QWidget* page = makePage(column);
    auto* card = new Card(theme_);
    auto* gruk = new ArtView(theme_, Art::grukStatePatrol, QString());
    gruk->setFixedHeight(Measure::noteHero);
    auto* lines = columnIn(card, Measure::medium);
    lines->addWidget(gruk);
    lines->addWidget(
        paragraph(theme_, TextStyle::body,
                  QStringLiteral("The Gruk patrols on its own. You were never going to remember — "
                                 "that's fine, that's the point.")));
    lines->addWidget(paragraph(
        theme_, TextStyle::body,
        QStringLiteral("Automations live with each realm now — open a realm and look under "
                       "its Automations disclosure.")));
    lines->addWidget(
        paragraph(theme_, TextStyle::body,
                  QStringLiteral("Automatic patrols run while Gruk or its menu-bar Gruk is open. "
                                 "Nothing runs behind your back.")));
    column->addWidget(card);
    column->addStretch(1);
    return scrolling(page);
}

}  // namespace gruk
