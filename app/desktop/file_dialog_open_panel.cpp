#include "app/desktop/file_dialog_open_panel.h"

#include <coroutine>
#include <memory>

#include <QFile>
#include <QFileDialog>

#include "app/model/background.h"

namespace gruk {

namespace {

/// Waits until a dialog was answered or has gone; true when it was accepted.
class DialogAnswer {
public:
    explicit DialogAnswer(QFileDialog& dialog) : dialog_(dialog) {}

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> waiting)
    {
        // Both connections hold it; the dialog's end lets go of it at the latest.
        auto resumption = std::make_shared<Resumption>(waiting);
        QObject::connect(&dialog_, &QDialog::finished, &dialog_,
                         [accepted = accepted_, resumption](int result) {
                             *accepted = result == QDialog::Accepted;
                             resumption->resume();
                         });
    }

    [[nodiscard]] bool await_resume() const noexcept { return *accepted_; }

private:
    QFileDialog& dialog_;
    std::shared_ptr<bool> accepted_ = std::make_shared<bool>(false);
};

}  // namespace

FileDialogOpenPanel::FileDialogOpenPanel() = default;

FileDialogOpenPanel::~FileDialogOpenPanel()
{
    delete open_;
}

void FileDialogOpenPanel::setParentWindow(QWidget* window)
{
    window_ = window;
}

QCoro::Task<std::optional<FileURL>> FileDialogOpenPanel::chooseDirectory(OpenPanelRequest request)
{
    if (open_) {
        open_->raise();
        open_->activateWindow();
        co_return std::optional<FileURL>();
    }
    QPointer<QFileDialog> dialog = new QFileDialog(window_);
    open_ = dialog;
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setWindowTitle(QString::fromStdString(request.message));
    dialog->setLabelText(QFileDialog::Accept, QString::fromStdString(request.prompt));
    if (request.startingDirectory) {
        dialog->setDirectory(QFile::decodeName(request.startingDirectory->path().c_str()));
    }
    dialog->open();

    DialogAnswer answer(*dialog);
    const bool accepted = co_await answer;
    std::optional<FileURL> chosen;
    if (accepted && dialog && !dialog->selectedFiles().isEmpty()) {
        chosen =
            FileURL::directory(QFile::encodeName(dialog->selectedFiles().first()).toStdString());
    }
    if (dialog) {
        dialog->deleteLater();
    }
    co_return chosen;
}

}  // namespace gruk
