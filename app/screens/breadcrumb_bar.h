#pragma once

#include <optional>
#include <utility>
#include <vector>

#include <QAbstractButton>

#include "app/model/app_model.h"
#include "app/screens/breadcrumb_geometry.h"
#include "app/theme/label.h"
#include "app/theme/theme.h"

namespace gruk {

/// One folder of the path: its name, whole in its tooltip, underlined in the realm's colour under
/// the pointer.
class Crumb : public QAbstractButton {
    Q_OBJECT

public:
    enum class Place { onTheWay, current };

    Crumb(Theme& theme, const FileURL& url, Place place, Role accent, QWidget* parent);

    [[nodiscard]] const FileURL& url() const { return url_; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Theme& theme_;
    FileURL url_;
    Place place_;
    Role accent_;
};

/// The path from the realm down to the browsed folder, each part of it a button that goes there.
/// Where it is too long the middle folds together; the folded ones open in a menu, and Tab unfolds
/// them one by one.
class BreadcrumbBar : public QWidget {
    Q_OBJECT

public:
    BreadcrumbBar(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    [[nodiscard]] const std::vector<Crumb*>& crumbs() const { return crumbs_; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Its crumbs are others, and come last in the window for Tab.
    void rebuilt();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] std::vector<FileURL> path() const;
    [[nodiscard]] Role accent() const;
    void rebuild();
    void addCrumb(const FileURL& url, Crumb::Place place);
    void place();
    void placeFolds();
    void openFold(const QWidget& button, std::size_t first, std::size_t end);
    [[nodiscard]] std::optional<std::size_t> focusedCrumb() const;

    AppModel& model_;
    Theme& theme_;
    Label* nowhere_;
    /// The path and the colour that it shows; none before the first.
    std::optional<std::pair<std::vector<FileURL>, Role>> shown_;
    std::vector<Crumb*> crumbs_;
    std::vector<QAbstractButton*> folds_;
    CrumbLayout layout_;
    Subscription subscription_;
};

}  // namespace gruk
