#pragma once

#include <QScrollArea>

#include "app/model/app_model.h"
#include "app/theme/label.h"

class QVBoxLayout;

namespace gruk {

class FindingsSection;

/// The page of one realm: what was found, what changed, what is heavy. Lives as long as its realm
/// is the active one; what the user opened and picked on it ends with it.
class GrukPatrolView : public QScrollArea {
    Q_OBJECT

public:
    GrukPatrolView(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    /// Scrolls until one of its controls is in view, with nothing over it.
    void bringIntoView(QWidget& control);

protected:
    bool focusNextPrevChild(bool next) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QWidget* makeHeader();
    void fill(QVBoxLayout& column);
    void tellWhatIsInView();
    /// Scrolls along with the findings, which moved by that much.
    void followFindings(int by);
    /// Scrolls until the selection's card does not cover a control.
    void uncover(const QWidget& control);

    AppModel& model_;
    Theme& theme_;
    QWidget* column_;
    FindingsSection* findings_;
};

}  // namespace gruk
