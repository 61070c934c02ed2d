#include "app/screens/walkthrough_view.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "app/theme/accessible.h"
#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

namespace {

constexpr QSize sheetSize(640, 520);
constexpr int stepArtHeight = 220;
constexpr int textWidth = 460;
constexpr int stepDot = 8;

Label* centredText(Theme& theme, TextStyle style, const QString& text)
{
    auto* label = new Label(theme, style);
    label->setText(text);
    label->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    label->setWordWrap(true);
    label->setFixedSize(textWidth, label->heightForWidth(textWidth));
    return label;
}

int tallestBody(Theme& theme)
{
    int tallest = 0;
    for (const WalkthroughPage& page : WalkthroughView::pages()) {
        const std::unique_ptr<Label> body(centredText(theme, TextStyle::body, page.body));
        tallest = std::max(tallest, body->height());
    }
    return tallest;
}

/// One dot a page, the one that shows solid.
class PageDots : public QWidget {
public:
    PageDots(Theme& theme, const WalkthroughView& view) : theme_(theme), view_(view)
    {
        setAccessibleRole(*this, QAccessible::StaticText);
        const int count = static_cast<int>(WalkthroughView::pages().size());
        setFixedSize(count * stepDot + (count - 1) * Measure::small, stepDot + 2);
        connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        const int count = static_cast<int>(WalkthroughView::pages().size());
        for (int index = 0; index < count; ++index) {
            const bool isShown = index == view_.page();
            painter.setBrush(isShown ? theme_.colour(Role::accent)
                                     : theme_.colour(Role::ink, Strength::outline));
            painter.drawEllipse(QRectF(index * (stepDot + Measure::small), 1, stepDot, stepDot));
        }
    }

private:
    Theme& theme_;
    const WalkthroughView& view_;
};

}  // namespace

const std::vector<WalkthroughPage>& WalkthroughView::pages()
{
    static const std::vector<WalkthroughPage> all = {
        {Art::grukStateMap, QStringLiteral("Choose a realm."),
         QStringLiteral("Point the Gruk at a folder or disk. It maps what's there — names, sizes, "
                        "dates. Never the contents of your files.")},
        {Art::grukStateReport, QStringLiteral("Day one already helps."),
         QStringLiteral("The first patrol already finds real space to take back — duplicate "
                        "downloads, finished installers, caches apps rebuild on their own. You "
                        "don't need to organise anything.")},
        {Art::grukStatePatrol, QStringLiteral("Then the Gruk remembers."),
         QStringLiteral("Patrol again whenever you like. The Gruk tells you what changed and why "
                        "it flagged what it flagged. Evidence, not verdicts.")},
        {Art::grukStateCelebrate, QStringLiteral("You stay in charge."),
         QStringLiteral("Review Only is on until you say otherwise. Nothing is ever deleted — the "
                        "most the Gruk can do is move things to the system Trash, one confirmation "
                        "at a time.")},
        {Art::grukStateAttack, QStringLiteral("Make it yours."),
         QStringLiteral("Click a realm's shield to repaint it — shape, colours, even a creature "
                        "face if you want one. And when a realm gets cluttered, Organise can sort "
                        "loose files into folders for you, no typing required.")},
    };
    return all;
}

WalkthroughView::WalkthroughView(Theme& theme, QWidget* anyWidget)
    : Sheet(theme, QStringLiteral("How the Gruk works"), anyWidget), stage_(new QWidget),
      dots_(new PageDots(theme, *this)),
      skip_(new Button(theme, Button::Kind::link, QStringLiteral("Skip"))),
      next_(new Button(theme, Button::Kind::primary, QString())), turn_(this)
{
    setCardSize(sheetSize);
    skip_->setBesideButtons();
    for (const WalkthroughPage& page : pages()) {
        pageViews_.push_back(makePage(page));
    }
    stage_->installEventFilter(this);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(skip_);
    buttons->addStretch();
    buttons->addWidget(next_);
    column()->addWidget(stage_, 1);
    column()->addWidget(dots_, 0, Qt::AlignHCenter);
    column()->addLayout(buttons);
    setInitialFocus(next_);
    setDefaultButton(next_);

    turn_.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&turn_, &QVariantAnimation::valueChanged, this, &WalkthroughView::layOutPages);
    connect(skip_, &QPushButton::clicked, this, &Overlay::reject);
    connect(next_, &QPushButton::clicked, this, &WalkthroughView::goOn);
    showPage();
}

QWidget* WalkthroughView::makePage(const WalkthroughPage& page)
{
    auto* view = new QWidget(stage_);
    // Read as it comes into view, while the focus stays on the button.
    setAccessibleRole(*view, QAccessible::Notification);
    view->setAccessibleName(page.heading);
    auto* art = new ArtView(theme(), page.image, QString());
    art->setFixedHeight(stepArtHeight);
    auto* column = new QVBoxLayout(view);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::medium);
    column->addStretch(1);
    column->addWidget(art);
    Label* heading = centredText(theme(), TextStyle::value, page.heading);
    setAccessibleRole(*heading, QAccessible::Heading);
    // Always one line.
    heading->setWordWrap(false);
    column->addWidget(heading, 0, Qt::AlignHCenter);
    Label* body = centredText(theme(), TextStyle::body, page.body);
    // As high on each page, so that what stands over it stays where it is.
    body->setFixedHeight(tallestBody(theme()));
    column->addWidget(body, 0, Qt::AlignHCenter);
    column->addStretch(1);
    return view;
}

void WalkthroughView::setPage(int page)
{
    if (page == page_ || page < 0 || page >= static_cast<int>(pages().size())) {
        return;
    }
    const double from =
        turn_.state() == QAbstractAnimation::Stopped ? page_ : turn_.currentValue().toDouble();
    page_ = page;
    turn_.stop();
    {
        // While it rests these would show and hide pages.
        const QSignalBlocker quiet(turn_);
        turn_.setStartValue(from);
        turn_.setEndValue(static_cast<double>(page));
    }
    turn_.setDuration(isVisible() ? theme().duration(Measure::pageMilliseconds) : 0);
    turn_.start();
    showPage();
}

void WalkthroughView::goOn()
{
    if (page_ + 1 == static_cast<int>(pages().size())) {
        accept();
    } else {
        setPage(page_ + 1);
    }
}

void WalkthroughView::showPage()
{
    const auto count = static_cast<int>(pages().size());
    const WalkthroughPage& page = pages()[static_cast<std::size_t>(page_)];
    const bool isLast = page_ + 1 == count;
    next_->setText(isLast ? QStringLiteral("Off you go") : QStringLiteral("Next"));
    next_->updateGeometry();
    if (isLast && skip_->hasFocus()) {
        next_->setFocus(Qt::OtherFocusReason);
    }
    skip_->setVisible(!isLast);
    dots_->update();
    dots_->setAccessibleName(QStringLiteral("Page %1 of %2").arg(page_ + 1).arg(count));
    setAccessibleDescription(QStringLiteral("%1 %2").arg(page.heading, page.body));
    layOutPages();
}

void WalkthroughView::layOutPages()
{
    const double place =
        turn_.state() == QAbstractAnimation::Stopped ? page_ : turn_.currentValue().toDouble();
    for (std::size_t index = 0; index < pageViews_.size(); ++index) {
        const double away = static_cast<double>(index) - place;
        const int left = static_cast<int>(std::lround(away * stage_->width()));
        pageViews_[index]->setGeometry(QRect(QPoint(left, 0), stage_->size()));
        pageViews_[index]->setVisible(std::abs(away) < 1);
    }
}

bool WalkthroughView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == stage_ && event->type() == QEvent::Resize) {
        layOutPages();
    }
    if (Sheet::eventFilter(watched, event)) {
        return true;
    }
    // Before a button takes it, to which an arrow means the button beside it.
    const auto* widget = qobject_cast<QWidget*>(watched);
    return event->type() == QEvent::KeyPress && widget != nullptr
           && (widget == this || isAncestorOf(widget))
           && turnBy(static_cast<QKeyEvent*>(event)->key());
}

bool WalkthroughView::turnBy(int key)
{
    if (key != Qt::Key_Left && key != Qt::Key_Right) {
        return false;
    }
    setPage(page_ + (key == Qt::Key_Right ? 1 : -1));
    return true;
}

}  // namespace gruk
