#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/button.h"

namespace gruk {

class UnseenPlacesList;
class UnseenPlacesModel;

/// Under the count of places that a patrol could not see, on request, which they are and why. Not
/// there while there are none.
class UnseenPlacesSection : public QWidget {
    Q_OBJECT

public:
    UnseenPlacesSection(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void showModel();

    AppModel& model_;
    UnseenPlacesModel* places_;
    DisclosureButton* disclosure_;
    UnseenPlacesList* list_;
};

}  // namespace gruk
