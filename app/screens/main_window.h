#pragma once

#include <functional>
#include <optional>

#include <QKeySequence>
#include <QPointer>
#include <QWidget>

#include "app/model/app_model.h"
#include "app/screens/browse_selection.h"
#include "app/screens/detail_page.h"
#include "app/theme/theme.h"

class QVBoxLayout;

namespace gruk {

class DetailHeader;
class DropNotice;
class MessageStrip;
class SidebarView;
class WindowMemory;

/// The main window: the realms at the left, and at the right the page that the model's state asks
/// for. A folder dropped on it is granted.
class SweepView : public QWidget {
    Q_OBJECT

public:
    /// Borrows both, which must live longer.
    SweepView(AppModel& model, Theme& theme);

    [[nodiscard]] QWidget* page() const { return shown_; }
    [[nodiscard]] DetailPage detailPage() const { return page_; }
    /// Shows that page of the realm that is open, or of the next one that is.
    void setDetailPage(DetailPage page);

    /// Asks before everything on the Desktop goes into one folder; asks for the Desktop first when
    /// it is no realm yet, or has gone. Nothing moves without a yes.
    void tidyDesktop();
    void showWalkthrough();

Q_SIGNALS:
    void settingsRequested();
    void quitRequested();

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] QWidget* makePage();
    [[nodiscard]] QWidget* makeDetail();
    void addShortcuts();
    /// Runs `action` on these keys, also while a question is open.
    void onAnyKeys(const QKeySequence& keys, std::function<void()> action);
    /// Unless a question is open.
    void onKeys(const QKeySequence& keys, std::function<void()> action);
    void showPage();
    /// Puts the focus on what had it `last` on the page, else on what is used first of it.
    void focusPage(QWidget* last = nullptr);
    void focusFilter();
    void organise(const OrganisePlan& plan, const FileURL& realm);
    [[nodiscard]] bool isAsking() const;

    AppModel& model_;
    Theme& theme_;
    DetailPage page_ = DetailPage::patrol;
    SidebarView* sidebar_;
    DetailHeader* header_;
    /// Over a page that has no place of its own for them.
    MessageStrip* messages_;
    /// Over a realm's page that has been scrolled away from them.
    MessageStrip* echo_;
    DropNotice* dropNotice_;
    WindowMemory* memory_;
    QVBoxLayout* detail_ = nullptr;
    QWidget* shown_ = nullptr;
    /// The page of the realm that is open, while another one of it shows: what was ticked, opened
    /// and scrolled to on it is there when the user comes back.
    QWidget* kept_ = nullptr;
    QPointer<QWidget> keptFocus_;
    /// The realm whose page is shown, if it is one.
    std::optional<FileURL> shownRealm_;
    /// In the folder that was browsed last, while the page is another one.
    BrowseSelection selection_;
};

}  // namespace gruk
