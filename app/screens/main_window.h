#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/theme.h"

class QHBoxLayout;

namespace gruk {

class SidebarView;

/// The main window: the realms at the left, and at the right the page that the model's state asks
/// for. A folder dropped on it is granted. Remembers nothing of its own.
class SweepView : public QWidget {
    Q_OBJECT

public:
    /// Borrows both, which must live longer.
    SweepView(AppModel& model, Theme& theme);

    [[nodiscard]] QWidget* page() const { return page_; }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    [[nodiscard]] QWidget* makePage();
    void showPage();

    AppModel& model_;
    Theme& theme_;
    SidebarView* sidebar_;
    QHBoxLayout* columns_;
    QWidget* page_ = nullptr;
};

}  // namespace gruk
