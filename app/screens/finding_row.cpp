#include "app/screens/finding_row.h"

#include <array>

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "app/screens/patrol_text.h"
#include "app/screens/selection_box.h"
#include "app/theme/accessible.h"
#include "app/theme/card_painter.h"
#include "app/theme/tactile_press.h"
#include "app/theme/text.h"
#include "core/patrol/byte_format.h"
#include "core/patrol/finding_copy.h"

namespace gruk {

namespace {

constexpr int panelIndent = Measure::iconSize + Measure::medium;

/// A small outlined word.
class OutlinedLabel : public Label {
public:
    explicit OutlinedLabel(Theme& theme) : Label(theme, TextStyle::small)
    {
        setContentsMargins(Measure::small, Measure::hair, Measure::small, Measure::hair);
        setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Maximum);
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF body = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        painter.strokePath(cutPath(body, buttonCorners),
                           theme().colour(Role::ink, Strength::outline));
        Label::paintEvent(event);
    }
};

/// What the open panel says, and how.
struct PanelText {
    TextStyle style;
    QString text;
};

std::array<PanelText, 3> panelTexts(const ReviewFinding& finding)
{
    return {{
        {TextStyle::body,
         displayString(FindingCopy::whyFlagged(finding.reason, finding.url.path()))},
        {TextStyle::body, displayString(finding.explanation)},
        {TextStyle::bodyStrong, displayString(FindingCopy::confidenceNote(finding.confidence))},
    }};
}

QString sizeText(const ReviewFinding& finding)
{
    return bytesText(finding.allocatedSize);
}

QLabel* figure(Theme& theme, TextStyle style, const QString& text)
{
    auto* label = new Label(theme, style);
    label->setText(text);
    label->setAlignment(Qt::AlignRight);
    label->setMinimumWidth(Measure::figureWidth);
    return label;
}

}  // namespace

FindingRow::FindingRow(Theme& theme, const ReviewFinding& finding, bool isOpen, QWidget* parent)
    : Row(theme, parent), box_(new SelectionBox(theme)), pathText_(displayName(finding.url.path())),
      path_(new ElidedLabel(theme, TextStyle::small, Qt::ElideMiddle)),
      disclosure_(new DisclosureButton(theme, QStringLiteral("Why the Gruk flagged this"),
                                       QStringLiteral("Hide why"))),
      head_(new QWidget(this)), press_(new GrukTactileGroupPress(theme, *head_)),
      panel_(new QWidget(this))
{
    const QString name = displayName(finding.url.lastPathComponent());
    setAccessibleName(QStringLiteral("%1, %2, %3")
                          .arg(name, sizeText(finding), PatrolText::reasonLabel(finding.reason)));
    build(finding);
    describeControls();
    buildPanel(finding);
    disclosure_->setOpen(isOpen);
    showPanel();
    connect(box_, &SelectionBox::toggleRequested, this, &FindingRow::selectionToggled);
    connect(disclosure_, &QAbstractButton::toggled, this, &FindingRow::openChanged);
    setReviewOnly(true);
}

void FindingRow::describeControls()
{
    // Which item it is about is told of each; the path, since two can have one name. What there is
    // to know of it is told where one comes to it first.
    for (QWidget* control : {reveal_, trash_}) {
        control->setAccessibleDescription(pathText_);
    }
    for (QWidget* control : {static_cast<QWidget*>(box_), static_cast<QWidget*>(disclosure_)}) {
        control->setAccessibleDescription(
            QStringLiteral("%1, %2").arg(accessibleName(), pathText_));
    }
}

void FindingRow::setReviewOnly(bool reviewOnly)
{
    const QWidget* focused = window()->focusWidget();
    if (reviewOnly && (focused == box_ || focused == trash_)) {
        disclosure_->setFocus(Qt::OtherFocusReason);
    }
    box_->setVisible(!reviewOnly);
    press_->setPressable(!reviewOnly);
    trash_->setEnabled(!reviewOnly);
    trash_->setText(reviewOnly ? QStringLiteral("Review Only") : QStringLiteral("Move to Trash"));
    trash_->updateGeometry();
}

void FindingRow::setSelected(bool isSelected)
{
    box_->setChecked(isSelected);
}

std::vector<QWidget*> FindingRow::controls() const
{
    return {box_, disclosure_, reveal_, trash_};
}

void FindingRow::focusControl(std::size_t control)
{
    QWidget* wanted = controls()[control];
    const bool canTakeIt = wanted->isEnabled() && wanted->isVisibleTo(this);
    (canTakeIt ? wanted : disclosure_)->setFocus(Qt::OtherFocusReason);
}

int FindingRow::closedHeight(const Theme& theme)
{
    // The ring around an action that has the focus lies under the figures, and not on them.
    constexpr int roomForTheRing = Measure::focusGap + Measure::focusRing;
    return 2 * Measure::small + QFontMetrics(theme.font(TextStyle::bodyStrong)).height()
           + QFontMetrics(theme.font(TextStyle::small)).height() + roomForTheRing
           + Measure::buttonHeight + 1;
}

int FindingRow::openExtra(const Theme& theme, const ReviewFinding& finding, int width)
{
    const int textWidth = width - panelIndent - Measure::shadowOffset - 2 * Measure::medium;
    int height = 2 * Measure::medium + Measure::small;
    const auto texts = panelTexts(finding);
    for (const PanelText& part : texts) {
        height += wrappedHeight(part.text, theme.font(part.style), textWidth);
    }
    return height + static_cast<int>(texts.size() - 1) * Measure::small;
}

void FindingRow::build(const ReviewFinding& finding)
{
    auto* symbol = new IconLabel(theme(), iconFor(finding.reason), Measure::iconSize);
    auto* name = new ElidedLabel(theme(), TextStyle::bodyStrong, Qt::ElideMiddle);
    name->setFullText(displayName(finding.url.lastPathComponent()));
    setGone(false);
    auto* reason = new OutlinedLabel(theme());
    reason->setText(PatrolText::reasonLabel(finding.reason));

    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(name);
    words->addWidget(path_);
    auto* figures = new QVBoxLayout;
    figures->setSpacing(0);
    figures->addWidget(figure(theme(), TextStyle::bodyStrong, sizeText(finding)));
    if (finding.byteDelta) {
        figures->addWidget(
            figure(theme(), TextStyle::small,
                   QString::fromStdString(ByteFormat::signedString(*finding.byteDelta))));
    }
    figures->addStretch();

    auto* upper = new QHBoxLayout;
    // The actions under it have a shadow at their right.
    upper->setContentsMargins(0, 0, Measure::shadowOffset, 0);
    upper->setSpacing(Measure::medium);
    upper->addLayout(words, 1);
    upper->addWidget(reason, 0, Qt::AlignTop);
    upper->addLayout(figures);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(0);
    lines->addLayout(upper);
    lines->addStretch();
    lines->addLayout(makeActions());
    auto* row = new QHBoxLayout(head_);
    row->setContentsMargins(0, Measure::small, 0, Measure::hair);
    row->setSpacing(Measure::medium);
    row->addWidget(box_, 0, Qt::AlignTop);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addLayout(lines, 1);
}

QLayout* FindingRow::makeActions()
{
    reveal_ = new Button(theme(), Button::Kind::link, QStringLiteral("Reveal"));
    trash_ = new Button(theme(), Button::Kind::destructive, QStringLiteral("Move to Trash"));
    connect(reveal_, &QPushButton::clicked, this, &FindingRow::revealRequested);
    connect(trash_, &QPushButton::clicked, this, &FindingRow::trashRequested);
    disclosure_->setBesideButtons();
    reveal_->setBesideButtons();
    auto* row = new QHBoxLayout;
    row->setSpacing(Measure::large);
    row->addWidget(disclosure_);
    row->addStretch();
    row->addWidget(reveal_);
    row->addWidget(trash_);
    return row;
}

void FindingRow::buildPanel(const ReviewFinding& finding)
{
    // Opened, it is read out: of the disclosure's new state the toolkit passes nothing on.
    setAccessibleRole(*panel_, QAccessible::Notification);
    panel_->setAccessibleName(disclosure_->text());
    auto* column = new QVBoxLayout(panel_);
    column->setContentsMargins(Measure::medium, Measure::medium, Measure::medium, Measure::medium);
    column->setSpacing(Measure::small);
    for (const PanelText& part : panelTexts(finding)) {
        auto* label = new Label(theme(), part.style);
        label->setText(part.text);
        label->setWordWrap(true);
        column->addWidget(label);
    }
}

void FindingRow::showPanel()
{
    // Also while it grows and shrinks.
    panel_->setVisible(height() > closedHeight(theme()));
    update();
}

void FindingRow::setGone(bool isGone)
{
    path_->setFullText(isGone ? QStringLiteral("Already gone — next patrol will forget it")
                              : pathText_);
    path_->setColour(Role::ink, isGone ? Strength::full : Strength::quiet);
}

QRect FindingRow::panelRect() const
{
    const int top = closedHeight(theme());
    return {panelIndent, top, width() - panelIndent - Measure::shadowOffset,
            height() - top - Measure::small};
}

void FindingRow::resizeEvent(QResizeEvent* event)
{
    head_->setGeometry(0, 0, width(), closedHeight(theme()) - 1);
    panel_->setGeometry(panelRect());
    showPanel();
    Row::resizeEvent(event);
}

void FindingRow::paintEvent(QPaintEvent* event)
{
    Row::paintEvent(event);
    if (panel_->isVisible()) {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(cutPath(panelRect(), buttonCorners), theme().colour(Role::paperInset));
    }
}

void FindingRow::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && box_->isVisible()
        && event->pos().y() < closedHeight(theme())) {
        Q_EMIT selectionToggled(event->modifiers());
    }
}

}  // namespace gruk
