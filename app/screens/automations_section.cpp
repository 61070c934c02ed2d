#include "app/screens/automations_section.h"

#include <algorithm>

#include <QVBoxLayout>

#include "app/screens/realm_automation_card.h"
#include "app/screens/repaint_once.h"
#include "app/theme/button.h"
#include "app/theme/tab_order.h"

namespace gruk {

AutomationsSection::AutomationsSection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme), realm_(model.activeRootURL())
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    auto* repaint = new RepaintOnce([this] { showGrant(); }, this);
    repaint->on(model_, &AppModel::grantsChanged);
    if (const std::optional<Grant> own = grant()) {
        makeCard(*own);
    } else {
        hide();
    }
}

std::optional<Grant> AutomationsSection::grant() const
{
    const auto found = std::ranges::find_if(model_.grants(), [this](const Grant& each) {
        return realm_ && FileURL::directory(each.path).standardized().path() == realm_->path();
    });
    return found == model_.grants().end() ? std::nullopt : std::optional(*found);
}

void AutomationsSection::makeCard(const Grant& grant)
{
    auto* disclosure =
        new DisclosureButton(theme_, QStringLiteral("Automations"), QStringLiteral("Automations"));
    disclosure->setObjectName(QStringLiteral("automations"));
    card_ = new RealmAutomationCard(model_, theme_, grant);
    card_->hide();
    auto* column = static_cast<QVBoxLayout*>(layout());
    column->addWidget(disclosure, 0, Qt::AlignLeft);
    column->addWidget(card_);
    connect(disclosure, &QAbstractButton::toggled, card_, &QWidget::setVisible);
    // The page may stand already.
    std::vector<QWidget*> stops = {tabStopBefore(*this), disclosure};
    std::ranges::copy(card_->tabStops(), std::back_inserter(stops));
    chainTabStops(stops);
}

void AutomationsSection::showGrant()
{
    const std::optional<Grant> own = grant();
    if (own && card_ != nullptr) {
        card_->setGrant(*own);
    } else if (own) {
        makeCard(*own);
    }
    setVisible(own.has_value());
}

}  // namespace gruk
