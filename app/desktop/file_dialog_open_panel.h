#pragma once

#include <QPointer>

#include "app/desktop/open_panel.h"

class QFileDialog;
class QWidget;

namespace gruk {

/// The open panel as the desktop's own folder chooser, where its platform integration gives one.
class FileDialogOpenPanel : public OpenPanel {
public:
    FileDialogOpenPanel();
    ~FileDialogOpenPanel() override;

    /// The window that the panel belongs to; borrowed, may be null and may end first.
    void setParentWindow(QWidget* window);

    [[nodiscard]] QCoro::Task<std::optional<FileURL>>
    chooseDirectory(OpenPanelRequest request) override;

private:
    QPointer<QWidget> window_;
    QPointer<QFileDialog> open_;
};

}  // namespace gruk
