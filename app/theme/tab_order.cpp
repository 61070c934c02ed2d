#include "app/theme/tab_order.h"

#include <QWidget>

namespace gruk {

void chainTabStops(const std::vector<QWidget*>& stops)
{
    std::vector<QWidget*> chain = stops;
    std::erase(chain, nullptr);
    if (chain.empty()) {
        return;
    }
    // The toolkit leaves a widget where it is when it comes next already, also when it does so by
    // being the very first of the window after the very last: unless there is another one between.
    QWidget between(chain.front()->window());
    between.setFocusPolicy(Qt::TabFocus);
    for (std::size_t index = 1; index < chain.size(); ++index) {
        QWidget::setTabOrder(chain[index - 1], &between);
        QWidget::setTabOrder(chain[index - 1], chain[index]);
    }
}

QWidget* tabStopBefore(const QWidget& area)
{
    for (QWidget* before = area.previousInFocusChain(); before != &area && !before->isWindow();
         before = before->previousInFocusChain()) {
        const bool takesTab = (before->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (takesTab && !area.isAncestorOf(before)) {
            return before;
        }
    }
    return nullptr;
}

}  // namespace gruk
