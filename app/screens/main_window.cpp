#include "app/screens/main_window.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>

#include "app/model/setting_keys.h"
#include "app/screens/detail_header.h"
#include "app/screens/drop_notice.h"
#include "app/screens/dropped_folders.h"
#include "app/screens/file_table_view.h"
#include "app/screens/hoard_confirmation.h"
#include "app/screens/message_strip.h"
#include "app/screens/organise_sheet.h"
#include "app/screens/page_fade.h"
#include "app/screens/patrol_page.h"
#include "app/screens/repaint_once.h"
#include "app/screens/sidebar.h"
#include "app/screens/territories_view.h"
#include "app/screens/undo_offer.h"
#include "app/screens/walkthrough_view.h"
#include "app/screens/welcome_page.h"
#include "app/screens/window_memory.h"
#include "app/theme/accessible.h"
#include "app/theme/focus_ring.h"
#include "app/theme/overlay.h"
#include "app/theme/scroll_keys.h"

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

/// What Tab comes to first on the page; null when there is nothing.
QWidget* firstControl(QWidget& page)
{
    for (QWidget* each = page.nextInFocusChain(); each != &page; each = each->nextInFocusChain()) {
        if (page.isAncestorOf(each) && each->isEnabled() && each->isVisibleTo(&page)
            && (each->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) {
            return each;
        }
    }
    return nullptr;
}

}  // namespace

SweepView::SweepView(AppModel& model, Theme& theme)
    : model_(model), theme_(theme), sidebar_(new SidebarView(model, theme)),
      header_(new DetailHeader(model, theme)),
      messages_(new MessageStrip(model, theme, MessagesSection::Place::anyPage)),
      echo_(new MessageStrip(model, theme, MessagesSection::Place::echo)),
      dropNotice_(new DropNotice(theme, *this)), memory_(new WindowMemory(model, *this))
{
    setAccessibleRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Gruk"));
    setAcceptDrops(true);
    setMinimumSize(Measure::smallestWindowWidth, Measure::smallestWindowHeight);
    memory_->restorePlace({Measure::defaultWindowWidth, Measure::defaultWindowHeight});
    setPalette(theme_.windowPalette());
    setFont(theme_.font(TextStyle::body));
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    columns->addWidget(sidebar_);
    columns->addWidget(makeDetail(), 1);
    page_ = memory_->page();
    header_->setPage(page_);
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
    if (const auto realm = memory_->realm(); realm && !model_.activeRootURL()) {
        model_.selectRealm(*realm);
    }
}

QWidget* SweepView::makeDetail()
{
    auto* detail = new QWidget;
    detail_ = new QVBoxLayout(detail);
    detail_->setContentsMargins(0, 0, 0, 0);
    detail_->setSpacing(0);
    detail_->addWidget(header_);
    detail_->addWidget(messages_);
    detail_->addWidget(echo_);
    echo_->setObjectName(QStringLiteral("messageEcho"));
    connect(header_, &DetailHeader::pageChosen, this, &SweepView::setDetailPage);
    connect(header_, &DetailHeader::walkthroughRequested, this, &SweepView::showWalkthrough);
    connect(header_, &DetailHeader::tidyRequested, this, &SweepView::tidyDesktop);
    connect(header_, &DetailHeader::settingsRequested, this, &SweepView::settingsRequested);
    connect(header_, &DetailHeader::quitRequested, this, &SweepView::quitRequested);
    connect(sidebar_, &SidebarView::stashRequested, this, &SweepView::tidyDesktop);
    connect(sidebar_, &SidebarView::organiseRequested, this, &SweepView::organise);
    return detail;
}

QWidget* SweepView::makePage()
{
    if (model_.activeRootURL()) {
        if (page_ == DetailPage::browse) {
            return new FileTableView(model_, theme_, selection_);
        }
        if (kept_ != nullptr) {
            return std::exchange(kept_, nullptr);
        }
        auto* page = new GrukPatrolView(model_, theme_);
        connect(page, &GrukPatrolView::messagesCameIntoView, this, [this, page](bool areInView) {
            if (shown_ == page) {
                echo_->setWanted(!areInView);
            }
        });
        return page;
    }
    if (model_.grants().empty()) {
        return new GrukWelcomeView(model_, theme_);
    }
    return new TerritoriesView(model_, theme_);
}

void SweepView::showPage()
{
    QWidget* before = shown_;
    // What the sidebar, the header or a question holds stays there.
    QWidget* const focused = focusWidget();
    const bool takesFocus = before != nullptr
                            && (focused == nullptr || focused == this || focused == before
                                || before->isAncestorOf(focused));
    if (before != nullptr && before->isVisible()) {
        fadeOut(theme_, *before);
    }
    if (const auto* table = qobject_cast<FileTableView*>(before)) {
        selection_ = table->keptSelection();
    }
    const bool isSameRealm = shownRealm_ && shownRealm_ == model_.activeRootURL();
    shownRealm_ = model_.activeRootURL();
    if (!isSameRealm && kept_ != nullptr) {
        std::exchange(kept_, nullptr)->deleteLater();
    }
    const QPointer<QWidget> lastFocus = kept_ != nullptr ? keptFocus_ : nullptr;
    if (before != nullptr) {
        // The new page has all of the room at once, and the old one stays as it was left.
        detail_->removeWidget(before);
    }
    shown_ = makePage();
    const auto* patrol = qobject_cast<GrukPatrolView*>(shown_);
    messages_->setWanted(patrol == nullptr);
    echo_->setWanted(patrol != nullptr && !patrol->hasMessagesInView());
    detail_->addWidget(shown_, 1);
    if (takesFocus) {
        // Before the toolkit, which would hand it to whatever comes next in the window.
        focusPage(lastFocus);
    }
    if (before != nullptr) {
        before->hide();
        if (isSameRealm && qobject_cast<GrukPatrolView*>(before) != nullptr) {
            kept_ = before;
            keptFocus_ = before->isAncestorOf(focused) ? focused : nullptr;
        } else {
            before->deleteLater();
        }
    }
}

void SweepView::focusPage(QWidget* last)
{
    if (isVisible()) {
        // What can't be seen yet takes no focus.
        shown_->show();
    }
    if (last != nullptr && last->isVisibleTo(shown_)) {
        last->setFocus(Qt::OtherFocusReason);
    } else if (auto* table = qobject_cast<FileTableView*>(shown_)) {
        table->focusRows();
    } else if (auto* patrol = qobject_cast<GrukPatrolView*>(shown_);
               patrol != nullptr && patrol->mapButton() != nullptr) {
        patrol->mapButton()->setFocus(Qt::OtherFocusReason);
    } else if (QWidget* control = firstControl(*shown_)) {
        control->setFocus(Qt::OtherFocusReason);
    }
}

void SweepView::setDetailPage(DetailPage page)
{
    if (page_ == page) {
        return;
    }
    page_ = page;
    memory_->setPage(page);
    header_->setPage(page);
    if (model_.activeRootURL()) {
        showPage();
    }
}

bool SweepView::isAsking() const
{
    const QList<Overlay*> questions = findChildren<Overlay*>();
    return std::ranges::any_of(questions, [](const Overlay* each) { return each->isOpen(); });
}

void SweepView::onAnyKeys(const QKeySequence& keys, std::function<void()> action)
{
    auto* shortcut = new QShortcut(keys, this);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, this, std::move(action));
}

void SweepView::onKeys(const QKeySequence& keys, std::function<void()> action)
{
    onAnyKeys(keys, [this, action = std::move(action)] {
        if (!isAsking()) {
            action();
        }
    });
}

void SweepView::addShortcuts()
{
    onKeys(Qt::Key_F5, [this] {
        if (auto* table = qobject_cast<FileTableView*>(shown_)) {
            table->measureAgain();
        } else if (model_.activeRootURL() && !model_.isPatrolling()) {
            model_.patrolActiveRealm();
        }
    });
    onKeys(Qt::CTRL | Qt::Key_F, [this] { focusFilter(); });
    onKeys(Qt::CTRL | Qt::Key_1, [this] { setDetailPage(DetailPage::patrol); });
    onKeys(Qt::CTRL | Qt::Key_2, [this] { setDetailPage(DetailPage::browse); });
    onKeys(Qt::CTRL | Qt::Key_Comma, [this] { Q_EMIT settingsRequested(); });
    onAnyKeys(Qt::CTRL | Qt::Key_Q, [this] { Q_EMIT quitRequested(); });
    onKeys(Qt::CTRL | Qt::Key_Z, [this] {
        // A field that is being typed in has the key first.
        if (const auto offer = undoOffer(model_); offer && tellsWhatCanBeUndone(model_)) {
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
    const std::optional<Confirmation> question = hoardConfirmation(model_);
    if (!question) {
        // Never granted, or gone since the sidebar was drawn.
        sidebar_->refresh();
        model_.grantDesktop();
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
    if (focusWidget() == nullptr) {
        // Not the first control of the sidebar: the page is what the keys are to scroll.
        focusPage();
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
    const std::vector<FileURL> places = foldersIn(event->mimeData());
    if (action && !isAsking() && !places.empty()) {
        // A file too, which is told why not.
        event->setDropAction(*action);
        event->accept();
        dropNotice_->showFor(places);
    }
}

void SweepView::dragLeaveEvent(QDragLeaveEvent* /*event*/)
{
    dropNotice_->hide();
}

void SweepView::dropEvent(QDropEvent* event)
{
    dropNotice_->hide();
    const auto action = harmlessAction(*event);
    // A question may have come while the folder was dragged.
    if (!action || isAsking()) {
        return;
    }
    std::vector<FileURL> places = foldersIn(event->mimeData());
    // What is said about a file is to stay when a folder opens.
    std::ranges::stable_partition(places, AppModel::couldBeRealm);
    for (const FileURL& url : places) {
        model_.grantRealm(url);
    }
    event->setDropAction(*action);
    event->accept();
}

void SweepView::keyPressEvent(QKeyEvent* event)
{
    // Nothing that has the focus wants it: the page is what there is to be read.
    auto* page = qobject_cast<QScrollArea*>(shown_);
    if (page == nullptr || !scrolledByKey(*page->verticalScrollBar(), *event)) {
        QWidget::keyPressEvent(event);
    }
}

bool SweepView::focusNextPrevChild(bool next)
{
    const QWidget* leaving = focusWidget();
    if (echo_->isAncestorOf(leaving) && !leaving->isVisible()) {
        // Its message went, or came into view below. Nobody asked to go anywhere, so the page stays
        // where it is.
        return echo_->giveFocusBack() || QWidget::focusNextPrevChild(next);
    }
    if (!QWidget::focusNextPrevChild(next)) {
        return false;
    }
    // A page brings into view what Tab reaches from within it, and nothing that it reaches from
    // the sidebar or the header.
    auto* page = qobject_cast<QScrollArea*>(shown_);
    QWidget* reached = focusWidget();
    if (page != nullptr && page->isAncestorOf(reached) && !page->isAncestorOf(leaving)) {
        if (auto* patrol = qobject_cast<GrukPatrolView*>(page)) {
            patrol->bringIntoView(*reached);
        } else {
            page->ensureWidgetVisible(reached);
        }
    }
    return true;
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
