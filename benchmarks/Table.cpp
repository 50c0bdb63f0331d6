#include "Table.h"

#include "Fail.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace wakeloft {

namespace {

std::string number(double value) {
    const int decimals = value == 0 || value >= 100 ? 0 : value < 10 ? 2 : 1;
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

std::string ratioOf(double figure, double floor) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", figure / floor);
    return floor > 0 ? text : "-";
}

} // namespace

double Samples::quantile(double share) const {
    if (values_.empty())
        fail("A figure was never measured.");
    std::vector<double> sorted = values_;
    std::ranges::sort(sorted);
    const double position = share * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(position);
    const auto above = std::min(below + 1, sorted.size() - 1);
    return std::lerp(sorted[below], sorted[above], position - static_cast<double>(below));
}

std::string Samples::text(const std::string& unit) const {
    return number(quantile(0.5)) + " " + unit + " (" + number(quantile(0.25)) + ".." +
           number(quantile(0.75)) + ")";
}

Table::Table() {
    print("median (quartiles)", "Wakeloft", "floor", "ratio", "limit", "");
}

void Table::limitRatio(const std::string& name, const std::string& unit, const Samples& figure,
                       const Samples& floor, double mostRatio) {
    const double figureMedian = figure.quantile(0.5);
    const double floorMedian = floor.quantile(0.5);
    if (floorMedian <= 0)
        fail("The floor of \"" + name + "\" is nothing.");
    print(name, figure.text(unit), floor.text(unit), ratioOf(figureMedian, floorMedian),
          "<= " + number(mostRatio), verdict(figureMedian <= mostRatio * floorMedian, "OVER"));
}

void Table::limit(const std::string& name, const std::string& unit, double figure, double floor,
                  double most) {
    print(name, number(figure) + " " + unit, number(floor) + " " + unit, ratioOf(figure, floor),
          "<= " + number(most), verdict(figure <= most, "OVER"));
}

void Table::require(const std::string& name, const std::string& unit, double figure, double least) {
    print(name, number(figure) + " " + unit, "", "", ">= " + number(least),
          verdict(figure >= least, "BLIND"));
}

void Table::show(const std::string& name, const std::string& unit, const Samples& figure,
                 const Samples& floor) {
    print(name, figure.text(unit), floor.text(unit), ratioOf(figure.quantile(0.5), floor.quantile(0.5)), "",
          "");
}

std::string Table::verdict(bool isMet, const char* otherwise) {
    isWithinLimits_ = isWithinLimits_ && isMet;
    return isMet ? "ok" : otherwise;
}

void Table::print(const std::string& name, const std::string& figure, const std::string& floor,
                  const std::string& ratio, const std::string& limit, const std::string& verdict) {
    std::printf("%-36s %-28s %-28s %6s %8s  %s\n", name.c_str(), figure.c_str(), floor.c_str(), ratio.c_str(),
                limit.c_str(), verdict.c_str());
    std::fflush(stdout);
}

} // namespace wakeloft
