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

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QWidget* makeHeader();
    void fill(QVBoxLayout& column);
    void tellWhatIsInView();

    AppModel& model_;
    Theme& theme_;
    QWidget* column_;
    FindingsSection* findings_;
};

}  // namespace gruk
