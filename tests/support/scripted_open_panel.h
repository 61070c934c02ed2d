#pragma once

#include <deque>
#include <utility>
#include <vector>

#include "app/desktop/open_panel.h"

namespace gruk::test {

/// An open panel whose user answers from a list, at once, and thinks better of it at its end.
class ScriptedOpenPanel final : public OpenPanel {
public:
    [[nodiscard]] QCoro::Task<std::optional<FileURL>>
    chooseDirectory(OpenPanelRequest request) override
    {
        requests.push_back(std::move(request));
        std::optional<FileURL> answer;
        if (!answers.empty()) {
            answer = answers.front();
            answers.pop_front();
        }
        co_return answer;
    }

    /// What it was asked for, in order.
    std::vector<OpenPanelRequest> requests;
    /// What the user will choose.
    std::deque<std::optional<FileURL>> answers;
};

}  // namespace gruk::test
