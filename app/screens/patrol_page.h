#pragma once

#include <QScrollArea>

#include "app/model/app_model.h"
#include "app/theme/label.h"

class QVBoxLayout;

namespace gruk {

class FindingsSection;
class MessagesSection;
class RepaintOnce;

/// The page of one realm: what was found, what changed, what is heavy. Lives as long as its realm
/// is the active one; what the user opened and picked on it ends with it.
class GrukPatrolView : public QScrollArea {
    Q_OBJECT

public:
    GrukPatrolView(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    /// Scrolls until one of its controls is in view, with nothing over it.
    void bringIntoView(QWidget& control);
    /// What begins the first patrol of a realm that has none; null when there is nothing to begin.
    [[nodiscard]] QWidget* mapButton() const;
    /// Whether what the last operation said is in view, whole.
    [[nodiscard]] bool hasMessagesInView() const { return hasMessagesInView_; }

Q_SIGNALS:
    /// What the last operation said has come into view, whole, or no longer is. Nothing said is in
    /// view.
    void messagesCameIntoView(bool areInView);

protected:
    bool focusNextPrevChild(bool next) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QWidget* makeHeader();
    void fill(QVBoxLayout& column);
    void tellWhatIsInView();
    void tellWhetherMessagesAreInView();
    /// Scrolls along with the findings, which moved by that much.
    void followFindings(int by);
    /// Scrolls until the selection's card does not cover a control.
    void uncover(const QWidget& control);

    AppModel& model_;
    Theme& theme_;
    QWidget* column_;
    FindingsSection* findings_;
    MessagesSection* messages_;
    RepaintOnce* lookForMessages_;
    bool hasMessagesInView_ = true;
    /// How far the page itself went down since its height was last set.
    int movedBy_ = 0;
};

}  // namespace gruk
