#pragma once

#include <string>
#include <vector>

namespace wakeloft {

/// A figure that was measured several times.
class Samples {
  public:
    void add(double value) { values_.push_back(value); }
    /// The value below which `share` (0 to 1) of the samples lie; 0.5: the median.
    [[nodiscard]] double quantile(double share) const;
    /// "median unit (first quartile..third quartile)".
    [[nodiscard]] std::string text(const std::string& unit) const;

  private:
    std::vector<double> values_;
};

/// Prints a line a measurement as soon as it is made, and remembers whether a limit was exceeded.
class Table {
  public:
    Table();

    /// The ratio of the medians must not exceed `mostRatio`.
    void limitRatio(const std::string& name, const std::string& unit, const Samples& figure,
                    const Samples& floor, double mostRatio);
    /// The figure itself must not exceed `most`; the floor stands beside it for comparison.
    void limit(const std::string& name, const std::string& unit, double figure, double floor, double most);
    /// A positive control: the figure must reach `least`, or the lines it stands for mean nothing.
    void require(const std::string& name, const std::string& unit, double figure, double least);
    /// For information.
    void show(const std::string& name, const std::string& unit, const Samples& figure, const Samples& floor);

    [[nodiscard]] bool isWithinLimits() const { return isWithinLimits_; }

  private:
    void print(const std::string& name, const std::string& figure, const std::string& floor,
               const std::string& ratio, const std::string& limit, const std::string& verdict);
    [[nodiscard]] std::string verdict(bool isMet, const char* otherwise);

    bool isWithinLimits_ = true;
};

} // namespace wakeloft
