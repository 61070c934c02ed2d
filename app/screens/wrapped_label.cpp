#include "app/screens/wrapped_label.h"

#include <algorithm>

#include <QPainter>

#include "app/theme/accessible.h"
#include "app/theme/text.h"

namespace gruk {

WrappedLabel::WrappedLabel(Theme& theme, TextStyle style, int mostLines, QWidget* parent)
    : Label(theme, style, parent), mostLines_(mostLines)
{
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void WrappedLabel::setFullText(const QString& text)
{
    setText(text);
    giveToolTip(*this, text);
    updateGeometry();
}

QSize WrappedLabel::sizeHint() const
{
    const int width = std::min(fontMetrics().horizontalAdvance(text()) + 1, maximumWidth());
    return {width, heightForWidth(width)};
}

QSize WrappedLabel::minimumSizeHint() const
{
    return {Measure::huge, fontMetrics().height()};
}

int WrappedLabel::heightForWidth(int width) const
{
    return static_cast<int>(std::max<qsizetype>(1, lines(width).size()))
           * fontMetrics().lineSpacing();
}

QStringList WrappedLabel::lines(int width) const
{
    return wrappedLines(text(), font(), width, mostLines_);
}

void WrappedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    int top = 0;
    for (const QString& line : lines(width())) {
        painter.drawText(QRect(0, top, width(), fontMetrics().lineSpacing()),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line);
        top += fontMetrics().lineSpacing();
    }
}

}  // namespace gruk
