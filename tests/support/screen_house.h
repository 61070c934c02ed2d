#pragma once

#include <QAbstractButton>
#include <QString>
#include <QStringList>

#include "app/screens/main_window.h"
#include "app/theme/theme.h"
#include "tests/support/accessible_tree.h"
#include "tests/support/model_house.h"

namespace gruk::test {

/// The window over a model under the test's control, shown without a display.
class ScreenHouse : public ModelHouse {
public:
    explicit ScreenHouse(std::shared_ptr<SnapshotScanner> scanner = nullptr);
    explicit ScreenHouse(const std::function<void(ModelCollaborators&)>& change);
    ~ScreenHouse();

    /// Runs everything until model and window rest.
    void settle();
    /// Lets the window catch up with the model, and no work run.
    void repaint();

    FileURL makePatrolledRealm(const std::string& name);
    void patrol();

    /// The texts of every label and button that can be seen, whole, in no order.
    [[nodiscard]] QStringList texts() const;
    [[nodiscard]] bool shows(const QString& text) const { return texts().contains(text); }

    /// The button that can be seen with that text; none without one.
    [[nodiscard]] QAbstractButton* button(const QString& text) const;

    Theme theme;
    std::unique_ptr<SweepView> window;

private:
    void open();
};

}  // namespace gruk::test
