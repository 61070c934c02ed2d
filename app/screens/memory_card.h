#pragma once

#include "app/model/app_model.h"
#include "app/theme/button.h"
#include "app/theme/card.h"
#include "app/theme/label.h"

class QVBoxLayout;

namespace gruk {

/// What the program remembers of past patrols takes on the disk, and the way to forget what is of
/// no realm any more.
class MemoryCard : public Card {
    Q_OBJECT

public:
    MemoryCard(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    /// Looks at the disk anew.
    void refresh();

private:
    void showModel();
    void showForgettable();
    [[nodiscard]] QWidget* makeRow(const PatrolMemory::Forgettable& place);
    void ask(const PatrolMemory::Forgettable& place);
    QCoro::Task<> forget(std::string path);

    AppModel& model_;
    Label* size_;
    Label* failure_;
    QWidget* damaged_;
    Label* intro_;
    QWidget* list_;
    QVBoxLayout* rows_;
    std::vector<PatrolMemory::Forgettable> shown_;
};

}  // namespace gruk
