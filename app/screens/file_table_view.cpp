#include "app/screens/file_table_view.h"

#include <algorithm>
#include <string>
#include <utility>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

#include "app/screens/breadcrumb_bar.h"
#include "app/screens/browse_empty_note.h"
#include "app/screens/browse_table.h"
#include "app/screens/repaint_once.h"
#include "app/screens/scan_node_text.h"
#include "app/theme/card.h"
#include "app/theme/label.h"
#include "app/theme/tab_order.h"
#include "app/theme/text_field.h"
#include "app/theme/work_mark.h"
#include "core/browse/breadcrumb_trail.h"

namespace gruk {

namespace {

constexpr int filterWidth = 180;

/// The item in `above` that `below` is, or lies in; none when it does not lie there.
std::optional<FileURL> itemOnTheWay(const FileURL& above, const std::optional<FileURL>& below)
{
    const std::vector<FileURL> way = BreadcrumbTrail::trail(above, below);
    return way.size() > 1 ? std::optional(way[1]) : std::nullopt;
}

bool isSamePlace(const std::optional<FileURL>& a, const std::optional<FileURL>& b)
{
    return a && b && a->standardized().path() == b->standardized().path();
}

}  // namespace

FileTableView::FileTableView(AppModel& model, Theme& theme, BrowseSelection kept, QWidget* parent)
    : PaperBackdrop(theme, parent), model_(model), theme_(theme),
      rows_(new ScanNodeModel(model.session(), this)), path_(new BreadcrumbBar(model, theme)),
      filter_(new TextField(theme, QStringLiteral("Filter"), QStringLiteral("Filter"))),
      table_(new BrowseTable(theme, *rows_)), empty_(new BrowseEmptyNote(theme)),
      working_(new WorkMark(theme)),
      footer_(new ElidedLabel(theme, TextStyle::detail, Qt::ElideRight)), kept_(std::move(kept)),
      folder_(model.session().currentDirectory())
{
    setObjectName(QStringLiteral("browsePage"));
    auto* centred = new QHBoxLayout(this);
    // In the same place as on the pages that scroll as a whole.
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    centred->setContentsMargins(Measure::pageMargin, Measure::pageMargin,
                                Measure::pageMargin + scrollBar, Measure::large);
    centred->addStretch(1);
    centred->addWidget(makeColumn(), 1000);
    centred->addStretch(1);

    connect(path_, &BreadcrumbBar::rebuilt, this, &FileTableView::chainControls);
    chainControls();
    connectTable();
    connectKeys();
    if (!isSamePlace(kept_.folder, folder_)) {
        kept_ = {folder_, {}, std::nullopt};
    }
    recall();
}

QWidget* FileTableView::makeColumn()
{
    auto* column = new QWidget;
    column->setMaximumWidth(Measure::columnWidth);
    auto* rows = new QVBoxLayout(column);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(Measure::medium);
    rows->addLayout(makeTop());
    rows->addWidget(makeCard(), 1);
    rows->addLayout(makeFooter());
    return column;
}

QHBoxLayout* FileTableView::makeTop()
{
    filter_->setText(QString::fromStdString(model_.session().filterText()));
    filter_->setSymbol(Icon::search);
    filter_->setClearable();
    filter_->setFixedWidth(filterWidth);
    filter_->installEventFilter(this);
    connect(filter_, &QLineEdit::textChanged, this,
            [this](const QString& text) { model_.session().setFilterText(text.toStdString()); });
    auto* top = new QHBoxLayout;
    top->setContentsMargins(0, 0, Measure::shadowOffset, 0);
    top->setSpacing(Measure::large);
    top->addWidget(path_, 1);
    top->addWidget(filter_);
    return top;
}

QWidget* FileTableView::makeCard()
{
    auto* card = new Card(theme_, Measure::small);
    // The note lies over the rows and is none of them: of a table only rows are read.
    auto* inside = new QGridLayout(card);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->setSpacing(0);
    inside->setRowMinimumHeight(0, table_->browseHeader().sizeHint().height());
    inside->setRowStretch(1, 1);
    inside->addWidget(table_, 0, 0, 2, 1);
    inside->addWidget(empty_, 1, 0);
    empty_->raise();
    connect(&empty_->clearFilter(), &QAbstractButton::clicked, this, [this] {
        // The button goes with what it stands for.
        focusRows();
        filter_->clear();
    });
    return card;
}

QHBoxLayout* FileTableView::makeFooter()
{
    footer_->setObjectName(QStringLiteral("browseFooter"));
    footer_->setColour(Role::ink, Strength::quiet);
    // Its place is kept, so that the words stand still when the last size has come.
    QSizePolicy policy = working_->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    working_->setSizePolicy(policy);
    auto* footer = new QHBoxLayout;
    footer->setSpacing(Measure::small);
    footer->addWidget(footer_, 1);
    footer->addWidget(working_);
    return footer;
}

void FileTableView::connectTable()
{
    connect(rows_, &QAbstractItemModel::modelAboutToBeReset, this, &FileTableView::remember);
    connect(rows_, &QAbstractItemModel::modelReset, this, &FileTableView::recall);
    connect(rows_, &ScanNodeModel::sizesChanged, this, &FileTableView::showFooter);
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { hasSelected_ = true; });
    connect(table_, &BrowseTable::opened, this, &FileTableView::open);
    connect(table_, &BrowseTable::upPressed, this, &FileTableView::goUp);
    connect(table_, &BrowseTable::backPressed, this, &FileTableView::goBack);
    connect(table_, &BrowseTable::menuAsked, this, &FileTableView::showMenu);
    connect(&table_->browseHeader(), &BrowseHeader::sortPressed, this, &FileTableView::setSort);
    if (const auto sort = tableSort(model_.session().sortOrder())) {
        tableSortOrder_ = {*sort};
    }
    table_->browseHeader().setSort(tableSort(model_.session().sortOrder()));
}

void FileTableView::connectKeys()
{
    const auto onKey = [this](const QKeySequence& key, void (FileTableView::*step)()) {
        auto* shortcut = new QShortcut(key, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, step);
    };
    onKey(Qt::ALT | Qt::Key_Left, &FileTableView::goBack);
    onKey(Qt::Key_Back, &FileTableView::goBack);
    onKey(Qt::ALT | Qt::Key_Up, &FileTableView::goUp);
}

void FileTableView::chainControls()
{
    std::vector<QWidget*> controls(path_->crumbs().begin(), path_->crumbs().end());
    controls.push_back(filter_);
    const std::vector<QAbstractButton*>& heads = table_->browseHeader().buttons();
    controls.insert(controls.end(), heads.begin(), heads.end());
    controls.push_back(table_);
    controls.push_back(&empty_->clearFilter());
    chainTabStops(controls);
}

void FileTableView::focusRows()
{
    table_->setFocus(Qt::OtherFocusReason);
}

void FileTableView::measureAgain()
{
    if (const std::optional<FileURL>& folder = model_.session().currentDirectory()) {
        model_.session().renew({*folder});
    }
}

void FileTableView::focusFilter()
{
    filter_->setFocus(Qt::ShortcutFocusReason);
    filter_->selectAll();
}

std::vector<FileURL> FileTableView::selection() const
{
    return table_->selectedURLs();
}

void FileTableView::open(int row)
{
    // A copy, since the nodes of this folder go.
    const FileEntry entry = rows_->node(row).entry();
    if (entry.isDirectory) {
        model_.session().open(entry.id);
    } else {
        model_.reveal({entry.id});
    }
}

void FileTableView::goBack()
{
    // A visit to another realm is none of this page's.
    const std::vector<FileURL>& visits = model_.session().breadcrumbs();
    if (!visits.empty() && !BreadcrumbTrail::trail(model_.activeRootURL(), visits.back()).empty()) {
        model_.session().goBack();
    }
}

void FileTableView::goUp()
{
    const std::vector<FileURL> path =
        BreadcrumbTrail::trail(model_.activeRootURL(), model_.session().currentDirectory());
    if (path.size() > 1) {
        model_.session().open(path[path.size() - 2]);
    }
}

void FileTableView::reveal()
{
    model_.reveal(selection());
}

void FileTableView::showMenu(const QPoint& at)
{
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("browseMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Reveal in file manager"), this, &FileTableView::reveal);
    menu->popup(at);
}

void FileTableView::setSort(ScanNodeModel::Column pressed)
{
    const std::optional<TableSort> current =
        tableSortOrder_.empty() ? std::nullopt : std::optional(tableSortOrder_.front());
    tableSortOrder_ = {sortAfterPress(pressed, current)};
    table_->browseHeader().setSort(tableSortOrder_.front());
    if (const auto order = sessionOrder(tableSortOrder_)) {
        model_.session().setSortOrder(*order);
    }
}

BrowseSelection FileTableView::keptSelection() const
{
    BrowseSelection kept = kept_;
    if (hasSelected_) {
        kept.urls = table_->selectedURLs();
    }
    if (std::optional<FileURL> current = table_->currentURL()) {
        kept.current = std::move(current);
    }
    return kept;
}

void FileTableView::remember()
{
    kept_ = keptSelection();
    scrolledTo_ = table_->verticalScrollBar()->value();
}

void FileTableView::recall()
{
    const std::optional<FileURL>& folder = model_.session().currentDirectory();
    if (isSamePlace(folder, folder_)) {
        table_->select(kept_.urls, kept_.current);
        table_->scrollRowsTo(scrolledTo_);
        // Those that a filter hides are still selected.
        hasSelected_ = false;
    } else {
        kept_ = {folder, {}, std::nullopt};
        const std::optional<FileURL> left = folder ? itemOnTheWay(*folder, folder_) : std::nullopt;
        table_->scrollToTop();
        if (left) {
            table_->selectAndShow(*left);
        }
    }
    folder_ = folder;
    const QString filter = QString::fromStdString(model_.session().filterText());
    if (filter_->text() != filter) {
        filter_->setText(filter);
    }
    emptyReason_.reset();
    if (folder_ && model_.session().nodes().empty()) {
        askWhyEmpty(*folder_);
    }
    showEmptiness();
    showFooter();
}

QCoro::Task<> FileTableView::askWhyEmpty(FileURL folder)
{
    const QPointer<FileTableView> self = this;
    const EmptyReason reason = co_await model_.whyEmpty(folder);
    if (self && folder_ == folder && model_.session().nodes().empty()) {
        emptyReason_ = reason;
        showEmptiness();
        showFooter();
    }
}

void FileTableView::showEmptiness()
{
    const ScanSession& session = model_.session();
    QString sentence;
    if (!folder_) {
        sentence = QStringLiteral("Choose a realm to look around in it.");
    } else if (!session.nodes().empty()) {
        sentence = nothingFilteredSentence(QString::fromStdString(session.filterText()));
    } else if (emptyReason_) {
        sentence = emptyFolderSentence(*emptyReason_);
    }
    const bool isEmpty = rows_->rowCount() == 0 && !sentence.isEmpty();
    empty_->clearFilter().setVisible(isEmpty && !session.nodes().empty());
    empty_->setSentence(sentence);
    empty_->setVisible(isEmpty);
    // Whoever stands in the table hears it, too.
    table_->setAccessibleDescription(isEmpty ? sentence : QString());
}

void FileTableView::showFooter()
{
    ScanNodeText::FolderSums sums = ScanNodeText::sums(model_.session().nodes());
    if (emptyReason_ == EmptyReason::isRefused) {
        ++sums.restricted;
    }
    footer_->setFullText(ScanNodeText::footer(sums));
    working_->setVisible(sums.areGrowing);
}

void FileTableView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::BackButton) {
        goBack();
        return;
    }
    PaperBackdrop::mousePressEvent(event);
}

void FileTableView::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}

bool FileTableView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == filter_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Escape && !filter_->text().isEmpty()) {
            filter_->clear();
            return true;
        }
        if (key == Qt::Key_Down) {
            table_->setFocus(Qt::TabFocusReason);
            return true;
        }
    }
    return PaperBackdrop::eventFilter(watched, event);
}

}  // namespace gruk
