#pragma once

#include <string>
#include <vector>

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
    void makeRows(const std::vector<HeavyItem>& items);
    [[nodiscard]] QWidget* makeRow(const HeavyItem& item);
    [[nodiscard]] Button* makeReveal(const HeavyItem& item);

    AppModel& model_;
    Theme& theme_;
    Label* introduction_;
    QVBoxLayout* rows_;
    Button* showAll_;
    /// The button of each row and which item it is for, from the top.
    std::vector<Button*> reveals_;
    std::vector<std::string> paths_;
    bool expandedHeavyItems_ = false;
};

}  // namespace gruk
