#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QCoreApplication>
#include <QLabel>
#include <QTest>

#include "app/screens/breadcrumb_bar.h"
#include "app/screens/browse_table.h"
#include "app/screens/file_table_view.h"
#include "tests/support/model_house.h"

namespace gruk::test {

/// The page over a realm with a folder in a folder, sizes known.
class BrowseHouse : public ModelHouse {
public:
    /// What the smallest file takes.
    static constexpr std::size_t block = 4'096;

    BrowseHouse()
    {
        directory.file("Forest/notes.txt", 2 * block);
        directory.file("Forest/large/inner/leaf", 9 * block);
        directory.file("Forest/small/one", block);
        directory.folder("Forest/empty");
        model->selectRealm(root());
        page = std::make_unique<FileTableView>(*model, theme);
        page->resize(800, 500);
        page->show();
        rest();
    }

    [[nodiscard]] FileURL root() const { return FileURL::directory(directory.path("Forest")); }
    [[nodiscard]] FileURL place(const std::string& name) const
    {
        return FileURL::directory(directory.path("Forest/" + name));
    }

    /// Runs everything until model and page rest.
    void rest()
    {
        settle();
        page->findChild<ScanNodeModel*>()->catchUp();
        constexpr int turns = 5;
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            settle();
        }
    }

    [[nodiscard]] BrowseTable& table() const { return *page->findChild<BrowseTable*>(); }
    [[nodiscard]] const std::optional<FileURL>& folder() const
    {
        return model->session().currentDirectory();
    }

    [[nodiscard]] QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < table().model()->rowCount(); ++row) {
            names.append(table().model()->index(row, 0).data().toString());
        }
        return names;
    }

    [[nodiscard]] QStringList crumbs() const
    {
        QStringList names;
        for (const Crumb* crumb : page->findChild<BreadcrumbBar*>()->crumbs()) {
            names.append(crumb->accessibleName());
        }
        return names;
    }

    [[nodiscard]] QString label(const char* name) const
    {
        const auto* label = page->findChild<QLabel*>(QString::fromLatin1(name));
        return label->isVisible() ? label->text() : QString();
    }

    void choose(const std::string& name)
    {
        table().setFocus();
        table().select({place(name)}, place(name));
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&table(), key, modifiers);
        rest();
    }

    void pressBackButton()
    {
        QTest::mouseClick(table().viewport(), Qt::BackButton, Qt::NoModifier, QPoint(20, 20));
        rest();
    }

    void doubleClick(const std::string& name)
    {
        const auto row = page->findChild<ScanNodeModel*>()->rowOf(place(name));
        const QPoint at = table().visualRect(table().model()->index(row.value(), 0)).center();
        QTest::mouseClick(table().viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(table().viewport(), Qt::LeftButton, Qt::NoModifier, at);
        rest();
    }

    Theme theme;
    std::unique_ptr<FileTableView> page;
};

}  // namespace gruk::test
