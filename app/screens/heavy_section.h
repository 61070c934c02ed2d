#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/button.h"
#include "app/theme/label.h"

class QVBoxLayout;

namespace gruk {

/// "The big stuff": the heaviest items, the first few or all of them.
class HeavySection : public QWidget {
    Q_OBJECT

public:
    HeavySection(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void showModel();
    [[nodiscard]] QWidget* makeRow(const HeavyItem& item) const;

    AppModel& model_;
    Theme& theme_;
    Label* introduction_;
    QVBoxLayout* rows_;
    Button* showAll_;
    bool expandedHeavyItems_ = false;
};

}  // namespace gruk
