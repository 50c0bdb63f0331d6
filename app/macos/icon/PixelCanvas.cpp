#include "PixelCanvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace wakeloft {

namespace {

constexpr int rowsPerPixel = 16;
constexpr int stepsPerCurve = 64;
constexpr int stepsPerEllipse = 256;

std::size_t index(int number) {
    return static_cast<std::size_t>(number);
}

/// Where the line from `a` to `b` is at the height `y`; the lower end does not count, so that no corner
/// counts twice.
std::optional<double> crossing(GlyphPoint a, GlyphPoint b, double y) {
    if ((a.y <= y) == (b.y <= y))
        return std::nullopt;
    return a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x);
}

} // namespace

PixelCanvas::PixelCanvas(int side, double scale, double inset)
    : side_(side), scale_(scale), inset_(inset), ink_(index(side) * index(side)) {}

GlyphPoint PixelCanvas::inPixels(GlyphPoint point) const {
    return {inset_ + point.x * scale_, inset_ + point.y * scale_};
}

void PixelCanvas::moveTo(GlyphPoint to) {
    path_.push_back({{inPixels(to)}, false});
}

void PixelCanvas::lineTo(GlyphPoint to) {
    addPoint(inPixels(to));
}

void PixelCanvas::addPoint(GlyphPoint pixel) {
    if (path_.empty())
        path_.emplace_back();
    else if (path_.back().isClosed) // what follows a closed line starts where that started
        path_.push_back({{path_.back().points.front()}, false});
    path_.back().points.push_back(pixel);
}

void PixelCanvas::curveTo(GlyphPoint control1, GlyphPoint control2, GlyphPoint to) {
    if (path_.empty() || path_.back().isClosed)
        addPoint(path_.empty() ? inPixels(control1) : path_.back().points.front());
    const GlyphPoint from = path_.back().points.back();
    const GlyphPoint one = inPixels(control1);
    const GlyphPoint two = inPixels(control2);
    const GlyphPoint end = inPixels(to);
    for (int step = 1; step <= stepsPerCurve; ++step) {
        const double t = static_cast<double>(step) / stepsPerCurve;
        const double rest = 1 - t;
        const double a = rest * rest * rest;
        const double b = 3 * rest * rest * t;
        const double c = 3 * rest * t * t;
        const double d = t * t * t;
        addPoint(
            {a * from.x + b * one.x + c * two.x + d * end.x, a * from.y + b * one.y + c * two.y + d * end.y});
    }
}

void PixelCanvas::closePath() {
    if (!path_.empty())
        path_.back().isClosed = true;
}

void PixelCanvas::ellipse(GlyphBox box) {
    const GlyphPoint center = box.center();
    for (int step = 0; step < stepsPerEllipse; ++step) {
        const double angle = 2 * std::numbers::pi * step / stepsPerEllipse;
        const GlyphPoint point{center.x + box.width / 2 * std::cos(angle),
                               center.y + box.height / 2 * std::sin(angle)};
        step == 0 ? moveTo(point) : lineTo(point);
    }
    closePath();
}

void PixelCanvas::stroke(double width) {
    const double radius = width * scale_ / 2;
    cover([&](double y) { return strokedAt(y, radius); },
          [](double ink, double covered) { return ink + covered * (1 - ink); });
}

void PixelCanvas::fill() {
    cover([this](double y) { return filledAt(y); },
          [](double ink, double covered) { return ink + covered * (1 - ink); });
}

void PixelCanvas::clear() {
    cover([this](double y) { return filledAt(y); },
          [](double ink, double covered) { return ink * (1 - covered); });
}

std::vector<PixelCanvas::Span> PixelCanvas::filledAt(double y) const {
    struct Edge {
        double x;
        int turn;
    };
    std::vector<Edge> edges;
    for (const Line& line : path_) {
        GlyphPoint from = line.points.back();
        for (const GlyphPoint& to : line.points) {
            if (const auto x = crossing(from, to, y))
                edges.push_back({*x, from.y < to.y ? 1 : -1});
            from = to;
        }
    }
    std::ranges::sort(edges, {}, &Edge::x);
    std::vector<Span> spans;
    int turns = 0;
    for (const Edge& edge : edges) {
        if (turns == 0)
            spans.push_back({edge.x, edge.x});
        turns += edge.turn;
        spans.back().right = edge.x;
    }
    return spans;
}

// A piece of a line with its round ends is convex, so that it is one span at any height.
std::vector<PixelCanvas::Span> PixelCanvas::strokedAt(double y, double radius) const {
    std::vector<Span> spans;
    const auto addPiece = [&](GlyphPoint from, GlyphPoint to) {
        std::vector<double> borders;
        for (const GlyphPoint& end : {from, to})
            if (const double reach = radius * radius - (y - end.y) * (y - end.y); reach > 0) {
                borders.push_back(end.x - std::sqrt(reach));
                borders.push_back(end.x + std::sqrt(reach));
            }
        if (const double length = std::hypot(to.x - from.x, to.y - from.y); length > 0) {
            const GlyphPoint across{(from.y - to.y) / length * radius, (to.x - from.x) / length * radius};
            for (const double way : {1.0, -1.0})
                if (const auto x = crossing({from.x + way * across.x, from.y + way * across.y},
                                            {to.x + way * across.x, to.y + way * across.y}, y))
                    borders.push_back(*x);
        }
        if (!borders.empty())
            spans.push_back({std::ranges::min(borders), std::ranges::max(borders)});
    };
    for (const Line& line : path_) {
        const auto& points = line.points;
        for (std::size_t i = 0; i < points.size(); ++i)
            addPiece(points[i], i + 1 < points.size() ? points[i + 1] : points[line.isClosed ? 0 : i]);
    }
    std::ranges::sort(spans, {}, &Span::left);
    std::vector<Span> joined;
    for (const Span& span : spans) {
        if (!joined.empty() && span.left <= joined.back().right)
            joined.back().right = std::max(joined.back().right, span.right);
        else
            joined.push_back(span);
    }
    return joined;
}

template <class SpansAt, class Mix>
void PixelCanvas::cover(SpansAt spansAt, Mix mix) {
    for (int row = 0; row < side_; ++row) {
        std::vector<double> covered(index(side_));
        for (int part = 0; part < rowsPerPixel; ++part)
            for (const Span& span : spansAt(row + (part + 0.5) / rowsPerPixel)) {
                const double left = std::clamp(span.left, 0.0, static_cast<double>(side_));
                const double right = std::clamp(span.right, 0.0, static_cast<double>(side_));
                for (int column = static_cast<int>(left); column < right; ++column)
                    covered[index(column)] +=
                        std::min(right, column + 1.0) - std::max(left, static_cast<double>(column));
            }
        for (int column = 0; column < side_; ++column) {
            double& ink = ink_[index(row) * index(side_) + index(column)];
            ink = mix(ink, covered[index(column)] / rowsPerPixel);
        }
    }
    path_.clear();
}

} // namespace wakeloft
