#include "app/screens/main_window.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QMimeData>
#include <QShortcut>

#include "app/model/setting_keys.h"
#include "app/screens/detail_header.h"
#include "app/screens/dropped_folders.h"
#include "app/screens/file_table_view.h"
#include "app/screens/hoard_confirmation.h"
#include "app/screens/organise_sheet.h"
#include "app/screens/page_fade.h"
#include "app/screens/patrol_page.h"
#include "app/screens/repaint_once.h"
#include "app/screens/sidebar.h"
#include "app/screens/territories_view.h"
#include "app/screens/undo_offer.h"
#include "app/screens/walkthrough_view.h"
#include "app/screens/welcome_page.h"
#include "app/theme/focus_ring.h"
#include "app/theme/sheet.h"

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
      header_(new DetailHeader(model, theme))
{
    setWindowTitle(QStringLiteral("Gruk"));
    setAcceptDrops(true);
    setMinimumSize(Measure::smallestWindowWidth, Measure::smallestWindowHeight);
    resize(Measure::defaultWindowWidth, Measure::defaultWindowHeight);
    setPalette(theme_.windowPalette());
    setFont(theme_.font(TextStyle::body));
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    columns->addWidget(sidebar_);
    columns->addWidget(makeDetail(), 1);
    showPage();
    addShortcuts();
    new FocusRing(theme_, *this);

    connect(&theme_, &Theme::changed, this, [this] { setPalette(theme_.windowPalette()); });
    connect(&model_, &AppModel::activeRootURLChanged, this, &SweepView::showPage);
    auto* repaint = new RepaintOnce(
        [this] {
            const bool welcomes = qobject_cast<GrukWelcomeView*>(shown_) != nullptr;
            if (!model_.activeRootURL() && welcomes != model_.grants().empty()) {
                showPage();
            }
        },
        this);
    repaint->on(model_, &AppModel::grantsChanged);
}

QWidget* SweepView::makeDetail()
{
    auto* detail = new QWidget;
    detail_ = new QVBoxLayout(detail);
    detail_->setContentsMargins(0, 0, 0, 0);
    detail_->setSpacing(0);
    detail_->addWidget(header_);
    connect(header_, &DetailHeader::pageChosen, this, &SweepView::setDetailPage);
    connect(header_, &DetailHeader::walkthroughRequested, this, &SweepView::showWalkthrough);
    connect(header_, &DetailHeader::tidyRequested, this, &SweepView::tidyDesktop);
    connect(header_, &DetailHeader::settingsRequested, this, &SweepView::settingsRequested);
    connect(header_, &DetailHeader::quitRequested, this, &SweepView::quitRequested);
    connect(sidebar_, &SidebarView::stashRequested, this, &SweepView::confirmStash);
    connect(sidebar_, &SidebarView::organiseRequested, this, &SweepView::organise);
    return detail;
}

QWidget* SweepView::makePage()
{
    if (model_.activeRootURL()) {
        if (page_ == DetailPage::browse) {
            return new FileTableView(model_, theme_);
        }
        return new GrukPatrolView(model_, theme_);
    }
    if (model_.grants().empty()) {
        return new GrukWelcomeView(model_, theme_);
    }
    return new TerritoriesView(model_, theme_);
}

void SweepView::showPage()
{
    QWidget* before = shown_;
    if (before != nullptr && before->isVisible()) {
        fadeOut(theme_, *before);
    }
    shown_ = makePage();
    if (before != nullptr) {
        detail_->removeWidget(before);
        before->hide();
        before->deleteLater();
    }
    detail_->addWidget(shown_, 1);
}

void SweepView::setDetailPage(DetailPage page)
{
    if (page_ == page) {
        return;
    }
    page_ = page;
    header_->setPage(page);
    if (model_.activeRootURL()) {
        showPage();
    }
}

bool SweepView::isAsking() const
{
    const QList<Sheet*> sheets = findChildren<Sheet*>();
    return std::ranges::any_of(sheets, [](const Sheet* sheet) { return sheet->isVisible(); });
}

void SweepView::onKeys(const QKeySequence& keys, std::function<void()> action)
{
    auto* shortcut = new QShortcut(keys, this);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, this, [this, action = std::move(action)] {
        if (!isAsking()) {
            action();
        }
    });
}

void SweepView::addShortcuts()
{
    onKeys(Qt::Key_F5, [this] {
        if (model_.activeRootURL() && !model_.isPatrolling()) {
            model_.patrolActiveRealm();
        }
    });
    onKeys(Qt::CTRL | Qt::Key_F, [this] { focusFilter(); });
    onKeys(Qt::CTRL | Qt::Key_1, [this] { setDetailPage(DetailPage::patrol); });
    onKeys(Qt::CTRL | Qt::Key_2, [this] { setDetailPage(DetailPage::browse); });
    onKeys(Qt::CTRL | Qt::Key_Comma, [this] { Q_EMIT settingsRequested(); });
    onKeys(Qt::CTRL | Qt::Key_Q, [this] { Q_EMIT quitRequested(); });
    onKeys(Qt::CTRL | Qt::Key_Z, [this] {
        // A field that is being typed in has the key first.
        if (const auto offer = undoOffer(model_)) {
            offer->run();
        }
    });
}

void SweepView::focusFilter()
{
    if (!model_.activeRootURL()) {
        return;
    }
    setDetailPage(DetailPage::browse);
    if (auto* table = qobject_cast<FileTableView*>(shown_)) {
        table->focusFilter();
    }
}

void SweepView::tidyDesktop()
{
    if (model_.grantedDesktopURL()) {
        confirmStash();
    } else {
        model_.grantDesktop();
    }
}

void SweepView::confirmStash()
{
    const std::optional<Confirmation> question = hoardConfirmation(model_);
    if (!question) {
        return;
    }
    auto* dialog = new ConfirmationDialog(theme_, *question, this);
    dialog->setObjectName(QStringLiteral("hoardQuestion"));
    connect(dialog, &ConfirmationDialog::accepted, this, [this] { model_.tidyDesktop(); });
    dialog->open();
}

void SweepView::organise(const OrganisePlan& plan, const FileURL& realm)
{
    (new OrganiseSheet(model_, theme_, plan, realm, this))->open();
}

void SweepView::showWalkthrough()
{
    auto* walkthrough = new WalkthroughView(theme_, this);
    connect(walkthrough, &WalkthroughView::finished, this, [this] {
        try {
            model_.preferences().setBoolean(SettingKeys::hasSeenWalkthrough, true);
        } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): it shows once more
        }
    });
    walkthrough->open();
}

void SweepView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // Also told when the desktop maps the window again; the user sees no new window then.
    if (event->spontaneous()) {
        return;
    }
    if (!model_.preferences().boolean(SettingKeys::hasSeenWalkthrough).value_or(false)
        && !isAsking()) {
        showWalkthrough();
    }
    if (!model_.activeRootURL()) {
        model_.loadTerritories();
    }
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
