#pragma once

#include <optional>
#include <string>

#include <QCoro/QCoroTask>

#include "platform/foundation/file_url.h"

namespace gruk {

/// What an open panel says and where it opens.
struct OpenPanelRequest {
    /// What is to be chosen, and why.
    std::string message;
    /// The text of the button that chooses.
    std::string prompt;
    /// Where it opens; where it likes without one.
    std::optional<FileURL> startingDirectory;

    friend bool operator==(const OpenPanelRequest&, const OpenPanelRequest&) = default;
};

/// The desktop's way to let the user choose one folder. Main thread only.
class OpenPanel {
public:
    virtual ~OpenPanel() = default;

    /// Shows the panel and returns at once; the task ends with the folder chosen, or with none
    /// when the user thought better of it. A panel that is still open is brought forward, and the
    /// second request ends with none.
    [[nodiscard]] virtual QCoro::Task<std::optional<FileURL>>
    chooseDirectory(OpenPanelRequest request) = 0;
};

}  // namespace gruk
