#pragma once

#include <QWidget>

#include "app/screens/selection_state.h"
#include "app/theme/button.h"

namespace gruk {

/// The controls that make a selection: all, all of one kind, none.
class SelectionBar : public QWidget {
    Q_OBJECT

public:
    explicit SelectionBar(Theme& theme, QWidget* parent = nullptr);

    void setState(const SelectionState& state);

    /// The control that is there as long as there is anything to select.
    [[nodiscard]] QWidget* selectAllButton() const { return all_; }

Q_SIGNALS:
    void selectAllRequested();
    void selectAllOfKindRequested();
    void clearRequested();

private:
    Button* all_;
    Button* allOfKind_;
    Button* clear_;
};

}  // namespace gruk
