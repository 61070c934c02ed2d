#include "app/theme/label.h"

#include <algorithm>

#include <QPainter>
#include <QStyle>

#include "app/theme/accessible.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

/// How many characters a line has at most where there is room for more, as the toolkit has it.
constexpr int widestLine = 80;
/// A word of so many average characters is not broken while the layout has the room to give.
constexpr int longestWholeWord = 24;

bool isHeading(TextStyle style)
{
    return style == TextStyle::pageTitle || style == TextStyle::sectionTitle;
}

}  // namespace

Label* paragraph(Theme& theme, TextStyle style, const QString& text)
{
    auto* label = new Label(theme, style);
    label->setWordWrap(true);
    label->setText(text);
    return label;
}

Label::Label(Theme& theme, TextStyle style, QWidget* parent) : QLabel(parent), theme_(theme)
{
    if (isHeading(style)) {
        setAccessibleRole(*this, QAccessible::Heading);
    }
    setTextFormat(Qt::PlainText);
    setFont(theme_.font(style));
    recolour();
    connect(&theme_, &Theme::changed, this, &Label::recolour);
}

void Label::setColour(Role role, double opacity)
{
    role_ = role;
    opacity_ = opacity;
    recolour();
}

void Label::recolour()
{
    QPalette colours = palette();
    const Role role = textRole(role_);
    colours.setColor(QPalette::WindowText, theme_.colour(role, opacity_));
    setPalette(colours);
}

QSize Label::sizeHint() const
{
    const QSize hint = QLabel::sizeHint();
    if (!wordWrap()) {
        return hint;
    }
    const QMargins around = contentsMargins();
    const int widest =
        fontMetrics().averageCharWidth() * widestLine + around.left() + around.right();
    const int width = std::min({hint.width(), widest, maximumWidth()});
    return {width, heightForWidth(width)};
}

QSize Label::minimumSizeHint() const
{
    const QSize hint = QLabel::minimumSizeHint();
    const int longestWord = fontMetrics().averageCharWidth() * longestWholeWord;
    return wordWrap() ? QSize(std::min(hint.width(), longestWord), hint.height()) : hint;
}

int Label::heightForWidth(int width) const
{
    if (!wordWrap()) {
        return QLabel::heightForWidth(width);
    }
    const QMargins around = contentsMargins();
    return wrappedHeight(text(), font(), width - around.left() - around.right()) + around.top()
           + around.bottom();
}

void Label::paintEvent(QPaintEvent* event)
{
    if (!wordWrap()) {
        QLabel::paintEvent(event);
        return;
    }
    const QStringList lines = wrappedLines(text(), font(), contentsRect().width());
    const QFontMetrics metrics = fontMetrics();
    const int height =
        static_cast<int>(lines.size() - 1) * metrics.lineSpacing() + metrics.height();
    QRect line = QStyle::alignedRect(Qt::LeftToRight, alignment(),
                                     QSize(contentsRect().width(), height), contentsRect());
    line.setHeight(metrics.height());
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    const auto direction = text().isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
    const auto across = static_cast<int>(QStyle::visualAlignment(direction, alignment())
                                         & Qt::AlignHorizontal_Mask);
    for (const QString& each : lines) {
        painter.drawText(line, across | Qt::AlignVCenter | Qt::TextSingleLine, each);
        line.translate(0, metrics.lineSpacing());
    }
}

ElidedLabel::ElidedLabel(Theme& theme, TextStyle style, Qt::TextElideMode mode, QWidget* parent)
    : Label(theme, style, parent), mode_(mode)
{
    // What its tooltip holds is its name, and need not be told twice.
    if (!isHeading(style)) {
        setAccessibleRole(*this, QAccessible::StaticText);
    }
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setFullText(const QString& text)
{
    setText(text);
    setToolTip(toolTipText(text));
}

QSize ElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(text()) + 1, metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {Measure::huge, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), mode_, width()));
}

IconLabel::IconLabel(Theme& theme, Icon icon, int size, QWidget* parent)
    : QWidget(parent), theme_(theme), icon_(icon)
{
    setFixedSize(size, size);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void IconLabel::setIcon(Icon icon)
{
    icon_ = icon;
    update();
}

void IconLabel::setColour(Role role, double opacity)
{
    role_ = role;
    opacity_ = opacity;
    update();
}

void IconLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool isAccent = role_ == Role::fern || role_ == Role::fernDark;
    const Role role = isAccent ? Role::accent : role_;
    drawIcon(painter, {}, icon_, theme_.colour(role, opacity_), width());
}

}  // namespace gruk
