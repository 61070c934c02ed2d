#include "app/screens/breadcrumb_bar.h"

#include <algorithm>
#include <utility>

#include <QEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

#include "app/screens/repaint_once.h"
#include "app/theme/accessible.h"
#include "app/theme/drawing.h"
#include "app/theme/icons.h"
#include "app/theme/key_press.h"
#include "app/theme/text.h"
#include "core/browse/breadcrumb_trail.h"

namespace gruk {

namespace {

constexpr int breadcrumbHeight = Measure::buttonHeight;
constexpr int widestCrumb = 240;
/// The rest is the ring's around the crumb that has the focus.
constexpr int crumbHeight = Measure::smallestTarget;
constexpr int crumbTop = (breadcrumbHeight - crumbHeight) / 2;
constexpr int separatorIcon = Measure::medium;
constexpr int separatorWidth = separatorIcon + Measure::small;
constexpr CrumbMeasures measures = {separatorWidth, Measure::smallestTarget,
                                    Measure::smallestTarget};
/// What the realm's colour and the gap after it take before the first crumb.
constexpr int crumbsLeft = Measure::bannerBar + Measure::small;

/// The "…" for folders that are folded away.
class FoldButton : public QAbstractButton {
public:
    FoldButton(Theme& theme, QWidget* parent) : QAbstractButton(parent), theme_(theme)
    {
        setText(QStringLiteral("…"));
        setAccessibleName(QStringLiteral("Folders between"));
        setToolTip(QStringLiteral("Folders between"));
        setFont(theme_.font(TextStyle::bodyStrong));
        setCursor(Qt::PointingHandCursor);
        // The keyboard reaches the folders themselves.
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setFont(font());
        painter.setPen(theme_.colour(Role::ink, underMouse() ? Strength::full : Strength::quiet));
        painter.drawText(rect(), Qt::AlignCenter, text());
    }

private:
    Theme& theme_;
};

}  // namespace

Crumb::Crumb(Theme& theme, const FileURL& url, Place place, Role accent, QWidget* parent)
    : QAbstractButton(parent), theme_(theme), url_(url), place_(place), accent_(accent)
{
    const QString name = displayName(url.lastPathComponent());
    // An "&" in a name is no mark of a shortcut; the name itself is what is read and painted.
    setText(QString(name).replace(QLatin1Char('&'), QStringLiteral("&&")));
    setAccessibleName(name);
    giveToolTip(*this, displayName(url.path()));
    setFont(theme_.font(place == Place::current ? TextStyle::bodyStrong : TextStyle::body));
    setCursor(Qt::PointingHandCursor);
    // A press leaves the focus where one works, in the table.
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize Crumb::sizeHint() const
{
    const int words = fontMetrics().horizontalAdvance(accessibleName());
    return {std::min(words + 2 * Measure::hair + 1, widestCrumb), crumbHeight};
}

void Crumb::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect words = rect().adjusted(Measure::hair, 0, -Measure::hair, 0);
    const bool isStrong = place_ == Place::current || underMouse();
    painter.setFont(font());
    painter.setPen(theme_.colour(Role::ink, isStrong ? Strength::full : Strength::quiet));
    const QString text = fontMetrics().elidedText(accessibleName(), Qt::ElideMiddle, words.width());
    drawLine(painter, words, text);
    if (underMouse()) {
        const int below = words.center().y() + fontMetrics().height() / 2 + 1;
        painter.fillRect(words.left(), below,
                         std::min(words.width(), fontMetrics().horizontalAdvance(text)),
                         Measure::focusRing, theme_.colour(accent_));
    }
}

void Crumb::keyPressEvent(QKeyEvent* event)
{
    if (!clickedByReturn(*this, *event)) {
        QAbstractButton::keyPressEvent(event);
    }
}

BreadcrumbBar::BreadcrumbBar(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme),
      nowhere_(new Label(theme, TextStyle::body, this))
{
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(QStringLiteral("Path"));
    nowhere_->setText(QStringLiteral("No location selected"));
    nowhere_->setColour(Role::ink, Strength::quiet);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* repaint = new RepaintOnce([this] { rebuild(); }, this);
    repaint->on(model_, &AppModel::activeRootURLChanged);
    repaint->on(model_, &AppModel::realmIdentityStoreChanged);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    subscription_ = model_.session().subscribe([repaint](ScanSession::Change change) {
        if (change == ScanSession::Change::folder) {
            repaint->request();
        }
    });
    rebuild();
}

QSize BreadcrumbBar::sizeHint() const
{
    return {widestCrumb, breadcrumbHeight};
}

QSize BreadcrumbBar::minimumSizeHint() const
{
    return {widestCrumb / 2, breadcrumbHeight};
}

std::vector<FileURL> BreadcrumbBar::path() const
{
    const std::optional<FileURL>& current = model_.session().currentDirectory();
    std::vector<FileURL> path = BreadcrumbTrail::trail(model_.activeRootURL(), current);
    if (path.empty() && current) {
        path.push_back(*current);
    }
    return path;
}

Role BreadcrumbBar::accent() const
{
    return roleOf(model_.activeRealmIdentity().primary);
}

void BreadcrumbBar::rebuild()
{
    const std::vector<FileURL> urls = path();
    if (shown_ == std::pair(urls, accent())) {
        // The folder was listed anew: whoever stands on a crumb stays there.
        return;
    }
    shown_ = {urls, accent()};
    const bool hadFocus = focusedCrumb().has_value();
    for (Crumb* crumb : std::exchange(crumbs_, {})) {
        crumb->hide();
        crumb->deleteLater();
    }
    for (std::size_t i = 0; i < urls.size(); ++i) {
        addCrumb(urls[i], i + 1 == urls.size() ? Crumb::Place::current : Crumb::Place::onTheWay);
    }
    nowhere_->setVisible(crumbs_.empty());
    place();
    Q_EMIT rebuilt();
    if (hadFocus && !crumbs_.empty()) {
        crumbs_.back()->setFocus(Qt::TabFocusReason);
    }
    update();
}

void BreadcrumbBar::addCrumb(const FileURL& url, Crumb::Place place)
{
    auto* crumb = new Crumb(theme_, url, place, accent(), this);
    connect(crumb, &QAbstractButton::clicked, this, [this, url] { model_.session().open(url); });
    crumb->installEventFilter(this);
    crumbs_.push_back(crumb);
    crumb->show();
}

void BreadcrumbBar::place()
{
    std::vector<int> widths;
    for (const Crumb* crumb : crumbs_) {
        widths.push_back(crumb->sizeHint().width());
    }
    layout_ = layOutCrumbs(widths, width() - crumbsLeft, measures, focusedCrumb());
    for (std::size_t i = 0; i < crumbs_.size(); ++i) {
        const CrumbLayout::Crumb& at = layout_.crumbs[i];
        crumbs_[i]->setGeometry(crumbsLeft + at.left, crumbTop, at.width, crumbHeight);
    }
    placeFolds();
    update();
}

void BreadcrumbBar::placeFolds()
{
    for (QAbstractButton* fold : std::exchange(folds_, {})) {
        fold->hide();
        fold->deleteLater();
    }
    for (const CrumbLayout::Fold& fold : layout_.folds) {
        auto* button = new FoldButton(theme_, this);
        button->setGeometry(crumbsLeft + fold.left, crumbTop, measures.fold, crumbHeight);
        connect(button, &QAbstractButton::clicked, this,
                [this, button, fold] { openFold(*button, fold.first, fold.end); });
        button->show();
        folds_.push_back(button);
    }
}

void BreadcrumbBar::openFold(const QWidget& button, std::size_t first, std::size_t end)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (std::size_t i = first; i < std::min(end, crumbs_.size()); ++i) {
        const FileURL url = crumbs_[i]->url();
        menu->addAction(crumbs_[i]->text(), this, [this, url] { model_.session().open(url); });
    }
    menu->popup(button.mapToGlobal(button.rect().bottomLeft()));
}

std::optional<std::size_t> BreadcrumbBar::focusedCrumb() const
{
    const auto focused = std::find_if(crumbs_.begin(), crumbs_.end(),
                                      [](const Crumb* crumb) { return crumb->hasFocus(); });
    return focused == crumbs_.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(focused - crumbs_.begin()));
}

void BreadcrumbBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    nowhere_->setGeometry(rect());
    place();
}

bool BreadcrumbBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

void BreadcrumbBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (crumbs_.empty()) {
        return;
    }
    const double inset = (breadcrumbHeight - Measure::largeIconSize) / 2.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.colour(accent()));
    painter.drawRoundedRect(QRectF(0, inset, Measure::bannerBar, Measure::largeIconSize),
                            Measure::bannerBar / 2.0, Measure::bannerBar / 2.0);
    for (const int left : layout_.separators) {
        drawIcon(painter,
                 QPointF(crumbsLeft + left + (separatorWidth - separatorIcon) / 2.0,
                         (breadcrumbHeight - separatorIcon) / 2.0 + 1),
                 Icon::chevronRight, theme_.colour(Role::ink, Strength::quiet), separatorIcon);
    }
}

}  // namespace gruk
