#include "app/screens/organise_entry.h"

#include <QHBoxLayout>

#include "app/screens/organise_sheet.h"
#include "app/screens/repaint_once.h"
#include "app/screens/review_only_panel.h"
#include "app/theme/accessible.h"

namespace gruk {

namespace {

QString toolTipIn(bool reviewOnly)
{
    return reviewOnly ? QStringLiteral(
               "Gathers loose files in this realm into folders by kind. Needs Trash "
               "actions enabled first — it's a bulk move, so it gets the same trust "
               "bar.")
                      : QStringLiteral(
                          "Gathers loose files in this realm into folders by kind. Nothing is "
                          "deleted, and one click puts it all back.");
}

}  // namespace

OrganiseEntry::OrganiseEntry(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme),
      organise_(new Button(theme, Button::Kind::secondary, QStringLiteral("Organise this realm"))),
      unlock_(new Button(theme, Button::Kind::link, QStringLiteral("Enable Trash actions…")))
{
    organise_->setSymbol(Icon::trays);
    unlock_->setBesideButtons();
    organise_->setObjectName(QStringLiteral("organiseRealm"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addWidget(organise_);
    row->addWidget(unlock_);
    row->addStretch();

    connect(organise_, &QPushButton::clicked, this, &OrganiseEntry::open);
    connect(unlock_, &QPushButton::clicked, this,
            [this] { askToEnableTrashActions(model_, theme_, this); });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::reviewOnlyModeChanged);
    showModel();
}

void OrganiseEntry::showModel()
{
    const bool reviewOnly = model_.reviewOnlyMode();
    organise_->setEnabled(!reviewOnly);
    giveToolTip(*organise_, toolTipIn(reviewOnly));
    unlock_->setVisible(reviewOnly);
}

void OrganiseEntry::open()
{
    const std::optional<OrganisePlan> plan = model_.organisePlanForActiveRealm();
    if (plan && model_.activeRootURL()) {
        (new OrganiseSheet(model_, theme_, *plan, *model_.activeRootURL(), this))->open();
    }
}

}  // namespace gruk
