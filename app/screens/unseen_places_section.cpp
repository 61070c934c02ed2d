#include "app/screens/unseen_places_section.h"

#include "app/screens/repaint_once.h"
#include "app/screens/unseen_places_list.h"
#include "app/theme/layouts.h"

namespace gruk {

UnseenPlacesSection::UnseenPlacesSection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), places_(new UnseenPlacesModel(model, this)),
      disclosure_(new DisclosureButton(theme, QStringLiteral("Places the Gruk couldn't see"),
                                       QStringLiteral("Places the Gruk couldn't see"))),
      list_(new UnseenPlacesList(theme, *places_))
{
    disclosure_->setObjectName(QStringLiteral("unseenPlaces"));
    QVBoxLayout* column = columnIn(this, Measure::small);
    column->addWidget(disclosure_, 0, Qt::AlignLeft);
    column->addWidget(list_);
    list_->hide();

    connect(disclosure_, &QAbstractButton::toggled, list_, &QWidget::setVisible);
    connect(list_, &UnseenPlacesList::grantRequested, this,
            [this](int row) { model_.grantRealm(places_->place(row)); });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    auto* regrant = new RepaintOnce([this] { places_->showGrants(); }, this);
    regrant->on(model_, &AppModel::grantsChanged);
    showModel();
}

void UnseenPlacesSection::showModel()
{
    places_->showSnapshot();
    setVisible(places_->rowCount() > 0);
}

}  // namespace gruk
