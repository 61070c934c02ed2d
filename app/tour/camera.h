#pragma once

#include <filesystem>
#include <string>

class QWidget;

namespace gruk::tour {

/// Takes pictures of widgets into PNG files in one folder, and remembers whether all of them were
/// written and show something.
class Camera {
public:
    /// Makes the folder. Throws `std::filesystem::filesystem_error`.
    explicit Camera(std::filesystem::path folder);

    /// Writes "{name}.png" with `scale` pixels for each logical one, and prints its path.
    void take(QWidget& widget, const std::string& name, int scale = 1);

    [[nodiscard]] int taken() const { return taken_; }
    /// How many could not be written, or show one colour or little more.
    [[nodiscard]] int failed() const { return failed_; }

private:
    std::filesystem::path folder_;
    int taken_ = 0;
    int failed_ = 0;
};

}  // namespace gruk::tour
