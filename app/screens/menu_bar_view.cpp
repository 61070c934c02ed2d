#include "app/screens/menu_bar_view.h"

#include <algorithm>

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "app/screens/repaint_once.h"
#include "app/screens/wrapped_label.h"
#include "app/theme/accessible.h"
#include "app/theme/art.h"
#include "app/theme/button.h"
#include "app/theme/focus_ring.h"
#include "app/theme/row.h"

namespace gruk {

namespace {

constexpr int panelWidth = 280;
constexpr int panelPadding = 14;
constexpr int panelRowGap = Measure::medium;
constexpr int heroSize = 52;
constexpr int mostStatusLines = 6;
constexpr int mostProgressLines = 3;

/// Whether a window may say where it wants to stand.
bool windowsHavePlaces()
{
    return !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

Qt::WindowFlags panelFlags()
{
    return windowsHavePlaces() ? Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                               : Qt::Dialog;
}

class Divider : public Row {
public:
    explicit Divider(Theme& theme) : Row(theme)
    {
        setAccessibleRole(*this, QAccessible::Separator);
        setFixedHeight(1);
    }
};

Button::Kind kindOf(MenuBarItem item)
{
    switch (item) {
    case MenuBarItem::patrolNow:
        return Button::Kind::primary;
    case MenuBarItem::settings:
    case MenuBarItem::openGruk:
    case MenuBarItem::quit:
        return Button::Kind::link;
    default:
        return Button::Kind::secondary;
    }
}

}  // namespace

QPoint panelPlace(const QRect& anchor, const QSize& panel, const QRect& available)
{
    const bool isAtTheTop = anchor.center().y() < available.center().y();
    const int x = anchor.center().x() - panel.width() / 2;
    const int y = isAtTheTop ? anchor.bottom() + 1 : anchor.top() - panel.height();
    const auto within = [](int place, int length, int from, int space) {
        return std::max(from, std::min(place, from + space - length));
    };
    return {within(x, panel.width(), available.left(), available.width()),
            within(y, panel.height(), available.top(), available.height())};
}

GrukMenuBarView::GrukMenuBarView(AppModel& model, Theme& theme)
    : PaperBackdrop(theme), model_(model), theme_(theme),
      status_(new WrappedLabel(theme, TextStyle::detail, mostStatusLines)),
      progress_(new WrappedLabel(theme, TextStyle::detail, mostProgressLines))
{
    setWindowFlags(panelFlags());
    setAttribute(Qt::WA_QuitOnClose, false);
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Gruk"));
    setAccessibleName(QStringLiteral("Gruk"));
    setPalette(theme_.windowPalette());
    setFont(theme_.font(TextStyle::body));
    setFixedWidth(panelWidth);
    for (WrappedLabel* line : {status_, progress_}) {
        line->setColour(Role::ink, Strength::quiet);
    }
    status_->setObjectName(QStringLiteral("menuBarStatus"));
    progress_->setObjectName(QStringLiteral("menuBarProgress"));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(panelPadding, panelPadding, panelPadding, panelPadding);
    column->setSpacing(panelRowGap);
    column->addWidget(makeHead());
    addButtons(*column);
    new FocusRing(theme_, *this);

    connect(&theme_, &Theme::changed, this, [this] { setPalette(theme_.windowPalette()); });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    requestOnMenuBarChange(*repaint, model_);
    showModel();
}

QWidget* GrukMenuBarView::makeHead()
{
    auto* hero = new ArtView(theme_, Art::grukHero, QString());
    hero->setFixedSize(heroSize, heroSize);
    auto* name = new Label(theme_, TextStyle::brand);
    name->setText(QStringLiteral("GRUK"));
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch();
    words->addWidget(name);
    words->addWidget(status_);
    words->addStretch();
    auto* head = new QWidget;
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(hero, 0, Qt::AlignTop);
    row->addLayout(words, 1);
    return head;
}

void GrukMenuBarView::addButtons(QVBoxLayout& column)
{
    for (const MenuBarItem item :
         {MenuBarItem::patrolAllRealms, MenuBarItem::patrolNow, MenuBarItem::progress,
          MenuBarItem::stopPatrol, MenuBarItem::tidyDesktop, MenuBarItem::settings,
          MenuBarItem::openGruk, MenuBarItem::divider, MenuBarItem::quit}) {
        if (item == MenuBarItem::progress) {
            column.addWidget(progress_);
        } else if (item == MenuBarItem::divider) {
            column.addWidget(new Divider(theme_));
        } else {
            addButton(column, item, new Button(theme_, kindOf(item), QString()));
        }
    }
    buttons_[MenuBarItem::patrolAllRealms]->setSymbol(Icon::hiking);
    buttons_[MenuBarItem::stopPatrol]->setSymbol(Icon::stop);
}

void GrukMenuBarView::addButton(QVBoxLayout& column, MenuBarItem item, Button* button)
{
    const bool isLink = kindOf(item) == Button::Kind::link;
    if (!isLink) {
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }
    column.addWidget(button, 0, isLink ? Qt::AlignLeft : Qt::Alignment());
    buttons_[item] = button;
    connect(button, &QPushButton::clicked, this, [this, item] { Q_EMIT chosen(item); });
}

void GrukMenuBarView::showModel()
{
    const std::vector<MenuBarEntry> entries = menuBarEntries(MenuBarState::of(model_));
    const auto find = [&](MenuBarItem item) {
        const auto found = std::ranges::find(entries, item, &MenuBarEntry::item);
        return found == entries.end() ? nullptr : &*found;
    };
    QWidget* const focused = focusWidget();
    status_->setFullText(find(MenuBarItem::status)->text);
    const MenuBarEntry* const progress = find(MenuBarItem::progress);
    progress_->setVisible(progress != nullptr);
    progress_->setFullText(progress != nullptr ? progress->text : QString());
    for (const auto& [item, button] : buttons_) {
        const MenuBarEntry* const entry = find(item);
        button->setVisible(entry != nullptr);
        if (entry != nullptr) {
            button->setText(entry->text);
            button->setEnabled(entry->isEnabled);
        }
    }
    if (focusWidget() != focused) {
        // The toolkit has passed it on to a neighbour, where a second press would do something
        // else.
        setFocus(Qt::OtherFocusReason);
    }
    fitHeight();
}

void GrukMenuBarView::fitHeight()
{
    layout()->activate();
    setFixedHeight(layout()->totalHeightForWidth(panelWidth));
    standAtAnchor();
}

void GrukMenuBarView::standAtAnchor()
{
    if (anchor_.isEmpty() || !windowsHavePlaces()) {
        return;
    }
    const QScreen* at = QGuiApplication::screenAt(anchor_.center());
    const QScreen* screen = at != nullptr ? at : QGuiApplication::primaryScreen();
    move(panelPlace(anchor_, size(), screen->availableGeometry()));
}

void GrukMenuBarView::showAt(const QRect& anchor, const ActivationTokens& tokens)
{
    anchor_ = anchor;
    showModel();
    // On none of the buttons, of which one tidies the Desktop at a press.
    setFocus(Qt::OtherFocusReason);
    bringForward(*this, tokens);
}

void GrukMenuBarView::toggleAt(const QRect& anchor, const ActivationTokens& tokens)
{
    if (sinceClick_.isValid() && sinceClick_.elapsed() < QApplication::doubleClickInterval()) {
        return;
    }
    sinceClick_.start();
    if (isVisible()) {
        hide();
    } else {
        showAt(anchor, tokens);
    }
}

void GrukMenuBarView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && !isActiveWindow() && isVisible()) {
        // It may be the press of a click on the tray item.
        sinceClick_.start();
        hide();
    }
    PaperBackdrop::changeEvent(event);
}

void GrukMenuBarView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        hide();
        return;
    }
    PaperBackdrop::keyPressEvent(event);
}

void GrukMenuBarView::paintEvent(QPaintEvent* event)
{
    PaperBackdrop::paintEvent(event);
    if (windowFlags().testFlag(Qt::FramelessWindowHint)) {
        QPainter painter(this);
        painter.setPen(theme_.colour(Role::ink, Strength::outline));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

}  // namespace gruk
