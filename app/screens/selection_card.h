#pragma once

#include "app/screens/selection_state.h"
#include "app/theme/button.h"
#include "app/theme/card.h"
#include "app/theme/label.h"

namespace gruk {

/// What is selected and what can be done with it. Lies over the list, so that it can be in view
/// wherever the list is scrolled to and no row moves when it comes; its owner places it.
class SelectionCard : public Card {
    Q_OBJECT

public:
    explicit SelectionCard(Theme& theme, QWidget* parent = nullptr);

    /// Shows itself while anything is selected.
    void setState(const SelectionState& state);

    /// The button of what can be done now.
    [[nodiscard]] QWidget* action() const;
    /// The last of its controls in the order of the Tab key.
    [[nodiscard]] QWidget* lastControl() const { return unlock_; }

Q_SIGNALS:
    void trashRequested();
    void unlockRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Label* count_;
    Label* notShown_;
    Button* trash_;
    Button* unlock_;
};

}  // namespace gruk
