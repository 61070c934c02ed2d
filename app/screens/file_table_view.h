#pragma once

#include <optional>
#include <vector>

#include "app/model/app_model.h"
#include "app/screens/browse_selection.h"
#include "app/screens/browse_sort.h"
#include "app/theme/paper_backdrop.h"
#include "app/theme/theme.h"

class QHBoxLayout;

namespace gruk {

class BreadcrumbBar;
class BrowseEmptyNote;
class BrowseTable;
class ElidedLabel;
class TextField;
class WorkMark;

/// The Browse page: the folder that the model's session shows as a table, with the path to it and
/// what it comes to. Everything about folders, order and filter is the session's; the page keeps
/// what is selected, for itself and for a later one. Nothing on it changes the disk.
class FileTableView : public PaperBackdrop {
    Q_OBJECT

public:
    /// `kept` is selected again, if it is of the folder that the session shows.
    FileTableView(AppModel& model, Theme& theme, BrowseSelection kept = {},
                  QWidget* parent = nullptr);

    /// Puts the keyboard into the field "Filter".
    void focusFilter();
    /// Puts the keyboard into the table.
    void focusRows();
    /// Lists and measures the folder that is shown anew.
    void measureAgain();

    /// The places of the selected items, in the order of the rows.
    [[nodiscard]] std::vector<FileURL> selection() const;
    /// The selection for a later page.
    [[nodiscard]] BrowseSelection keptSelection() const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QWidget* makeColumn();
    [[nodiscard]] QHBoxLayout* makeTop();
    [[nodiscard]] QWidget* makeCard();
    [[nodiscard]] QHBoxLayout* makeFooter();
    /// Tab goes through the page as it is read.
    void chainControls();
    void connectTable();
    void connectKeys();

    // Where one goes.
    void open(int row);
    void goBack();
    void goUp();
    void reveal();
    void showMenu(const QPoint& at);

    void setSort(ScanNodeModel::Column pressed);
    void remember();
    void recall();
    void showFooter();
    void showEmptiness();
    QCoro::Task<> askWhyEmpty(FileURL folder);

    AppModel& model_;
    Theme& theme_;
    ScanNodeModel* rows_;
    BreadcrumbBar* path_;
    TextField* filter_;
    BrowseTable* table_;
    BrowseEmptyNote* empty_;
    WorkMark* working_;
    ElidedLabel* footer_;

    std::vector<TableSort> tableSortOrder_;
    /// What was selected before the rows changed, and in which folder.
    BrowseSelection kept_;
    /// How far down the rows were scrolled before they changed.
    int scrolledTo_ = 0;
    /// Whether the user has selected since: then what he sees selected is all that is.
    bool hasSelected_ = false;
    std::optional<FileURL> folder_;
    /// Why the folder is empty; none while it is not, or not yet known.
    std::optional<EmptyReason> emptyReason_;
};

}  // namespace gruk
