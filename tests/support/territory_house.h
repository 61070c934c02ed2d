#pragma once

#include <string>

#include <QCoreApplication>
#include <QEvent>

#include "tests/support/model_house.h"

namespace gruk::test {

/// A model with realms of any size, without a walk: what is stored of each is written by the test.
class TerritoryHouse : public ModelHouse {
public:
    /// Grants a folder and stores a snapshot of it, with so many old installers in it; leaves no
    /// realm open.
    FileURL addRealm(const std::string& name, Bytes bytes, int findings = 0)
    {
        const FileURL url = makeRealm(name);
        settle();
        store->save(snapshot(url, bytes, findings));
        model->showTerritories();
        settle();
        return url;
    }

    static ScanSnapshot snapshot(const FileURL& url, Bytes bytes, int findings = 0)
    {
        ScanSnapshot snapshot;
        snapshot.id = UUID::random();
        snapshot.rootPath = url.path();
        snapshot.capturedAt = captured();
        snapshot.isComplete = true;
        constexpr Date longAgo = {1'000'000'000};
        std::vector<SnapshotEntry> entries = {{"all", bytes, longAgo, FileKind::other, false}};
        for (int index = 0; index < findings; ++index) {
            entries.push_back(
                {std::to_string(index) + ".dmg", 0, longAgo, FileKind::installer, false});
        }
        snapshot.entries = SnapshotEntries(entries);
        return snapshot;
    }

    /// When every snapshot was made.
    static Date captured() { return {1'789'990'000}; }

    /// Runs everything until model and windows rest.
    void rest()
    {
        constexpr int turns = 5;
        do {
            settle();
            for (int turn = 0; turn < turns; ++turn) {
                QCoreApplication::processEvents();
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            }
        } while (pool->count() > 0);
    }
};

}  // namespace gruk::test
