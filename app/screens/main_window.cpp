#include "app/screens/main_window.h"

#include <optional>

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QMimeData>

#include "app/screens/dropped_folders.h"
#include "app/screens/patrol_page.h"
#include "app/screens/repaint_once.h"
#include "app/screens/sidebar.h"
#include "app/screens/welcome_page.h"
#include "app/theme/focus_ring.h"

namespace gruk {

namespace {

/// Copying or linking, whichever the other side offers; never moving, after which it might think
/// that its folder is gone. None when it offers neither.
std::optional<Qt::DropAction> harmlessAction(const QDropEvent& event)
{
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction}) {
        if (event.possibleActions().testFlag(action)) {
            return action;
        }
    }
    return std::nullopt;
}

std::vector<FileURL> foldersIn(const QMimeData* data)
{
    return droppedFolders(data->data(QStringLiteral("text/uri-list")).toStdString());
}

}  // namespace

SweepView::SweepView(AppModel& model, Theme& theme)
    : model_(model), theme_(theme), sidebar_(new SidebarView(model, theme)),
      columns_(new QHBoxLayout(this))
{
    setWindowTitle(QStringLiteral("Gruk"));
    setAcceptDrops(true);
    setMinimumSize(Measure::smallestWindowWidth, Measure::smallestWindowHeight);
    resize(Measure::defaultWindowWidth, Measure::defaultWindowHeight);
    setPalette(theme_.windowPalette());
    setFont(theme_.font(TextStyle::body));
    columns_->setContentsMargins(0, 0, 0, 0);
    columns_->setSpacing(0);
    columns_->addWidget(sidebar_);
    showPage();
    new FocusRing(theme_, *this);

    connect(&theme_, &Theme::changed, this, [this] { setPalette(theme_.windowPalette()); });
    connect(&model_, &AppModel::activeRootURLChanged, this, &SweepView::showPage);
    auto* repaint = new RepaintOnce(
        [this] {
            if (!model_.activeRootURL()) {
                showPage();
            }
        },
        this);
    repaint->on(model_, &AppModel::grantsChanged);
}

QWidget* SweepView::makePage()
{
    if (model_.activeRootURL()) {
        return new GrukPatrolView(model_, theme_);
    }
    if (model_.grants().empty()) {
        return new GrukWelcomeView(model_, theme_);
    }
    return new NoRealmPage(theme_);
}

void SweepView::showPage()
{
    if (page_ != nullptr) {
        columns_->removeWidget(page_);
        page_->hide();
        page_->deleteLater();
    }
    page_ = makePage();
    columns_->addWidget(page_, 1);
}

void SweepView::dragEnterEvent(QDragEnterEvent* event)
{
    const auto action = harmlessAction(*event);
    if (action && !foldersIn(event->mimeData()).empty()) {
        event->setDropAction(*action);
        event->accept();
    }
}

void SweepView::dropEvent(QDropEvent* event)
{
    const auto action = harmlessAction(*event);
    if (!action) {
        return;
    }
    for (const FileURL& url : foldersIn(event->mimeData())) {
        model_.grantRealm(url);
    }
    event->setDropAction(*action);
    event->accept();
}

void SweepView::changeEvent(QEvent* event)
{
    // Whoever comes back to the window may have mounted a disk meanwhile.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        sidebar_->refresh();
    }
    QWidget::changeEvent(event);
}

}  // namespace gruk
