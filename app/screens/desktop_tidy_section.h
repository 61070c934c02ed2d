#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

/// The part of the sidebar that tidies the Desktop, or asks for access to it. While Review Only is
/// on it holds its controls back and says why.
class DesktopTidySection : public QWidget {
    Q_OBJECT

public:
    DesktopTidySection(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    /// Looks again whether the Desktop may be opened, which can change without the model's doing.
    void refresh();

Q_SIGNALS:
    /// Everything is to go into one folder, once the user has said yes.
    void stashRequested();
    /// `plan` is to be shown for `realm`, the Desktop.
    void organiseRequested(const gruk::OrganisePlan& plan, const gruk::FileURL& realm);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makeRequest(Theme& theme);
    [[nodiscard]] QWidget* makeEntries(Theme& theme);
    void organise();

    AppModel& model_;
    Theme& theme_;
    Button* stash_;
    Button* sort_;
    Label* stashNote_;
    Label* sortNote_;
    Label* lockedNote_;
    QWidget* request_;
    QWidget* entries_;
};

}  // namespace gruk
