#include "app/screens/automations_section.h"

#include <algorithm>

#include <QVBoxLayout>

#include "app/screens/realm_automation_card.h"
#include "app/theme/button.h"

namespace gruk {

AutomationsSection::AutomationsSection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent)
{
    const auto grant = std::ranges::find_if(model.grants(), [&](const Grant& each) {
        return model.activeRootURL()
               && FileURL::directory(each.path).standardized().path()
                      == model.activeRootURL()->path();
    });
    if (grant == model.grants().end()) {
        setVisible(false);
        return;
    }
    auto* disclosure =
        new DisclosureButton(theme, QStringLiteral("Automations"), QStringLiteral("Automations"));
    disclosure->setObjectName(QStringLiteral("automations"));
    auto* card = new RealmAutomationCard(model, theme, *grant);
    card->setVisible(false);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    column->addWidget(disclosure, 0, Qt::AlignLeft);
    column->addWidget(card);
    connect(disclosure, &QAbstractButton::toggled, card, &QWidget::setVisible);
}

}  // namespace gruk
