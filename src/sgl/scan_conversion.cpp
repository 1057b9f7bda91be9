#include "sgl/scan_conversion.h"

#include <algorithm>
#include <cstdlib>

#include "sgl/fixed_point.h"

namespace sgl {
namespace {

using Side = ScanEnd ScanEdge::*;

/// The x of an edge, row by row: whole pixels, without a fraction. It never leaves the edge's two ends.
class EdgeWalk {
public:
    /// `dy` rows, above 0, in which x moves by `dx`.
    EdgeWalk(int32_t x, int32_t dx, int32_t dy)
        : x_(x), direction_(dx < 0 ? -1 : 1), dx_(std::abs(dx)), dy_(dy), limit_(dy), acc_(dy) {
        if (dx_ < dy_) return;
        // At least a pixel a row: steps of `step_` and of one less.
        step_ = dx_ / dy_;
        limit_ = dx_;
        if (const int32_t rest = dx_ % dy_; rest != 0) {
            ++step_;
            limit_ = dx_ + dy_ - rest;
        }
        acc_ = limit_;
    }

    [[nodiscard]] int32_t X() const { return x_; }

    void NextRow() {
        acc_ += dx_;
        const bool longStep = acc_ > limit_;
        const int32_t steps = longStep ? step_ : step_ - 1;
        x_ += direction_ * steps;
        if (longStep) {
            acc_ -= limit_;
        } else if (dx_ >= dy_) {
            acc_ += dy_ - limit_;
        }
    }

private:
    int32_t x_;
    int32_t direction_;
    int32_t dx_, dy_;
    int32_t limit_, acc_;
    int32_t step_ = 1;
};

/// Writes one side of the table, from its start, chain by chain.
class ChainWriter {
public:
    ChainWriter(std::span<ScanEdge> table, Side side, bool withColors)
        : table_(table), side_(side), withColors_(withColors) {}

    /// The rows from `p0` to before `p1`; none for an edge that does not descend.
    void StepEdge(const ScreenVertex& p0, const ScreenVertex& p1) {
        if (p1.y <= p0.y) return;
        const int32_t dy = p1.y - p0.y;
        const size_t rows = std::min(static_cast<size_t>(dy), table_.size());
        if (withColors_) StepEdgeColors(rows, dy, p0.color, p1.color);
        EdgeWalk walk(p0.x, p1.x - p0.x, dy);
        const int32_t zStep = Subtract(p1.z, p0.z) / dy;
        int32_t z = p0.z;
        for (ScanEdge& edge : table_.first(rows)) {
            (edge.*side_).x = walk.X();
            (edge.*side_).z = z;
            walk.NextRow();
            z = Add(z, zStep);
        }
        table_ = table_.subspan(rows);
    }

private:
    void StepEdgeColors(size_t rows, int32_t dy, const Rgb& c0, const Rgb& c1) {
        const Rgb step{Subtract(c1.r, c0.r) / dy, Subtract(c1.g, c0.g) / dy, Subtract(c1.b, c0.b) / dy};
        Rgb color = c0;
        for (ScanEdge& edge : table_.first(rows)) {
            (edge.*side_).color = color;
            color = {Add(color.r, step.r), Add(color.g, step.g), Add(color.b, step.b)};
        }
    }

    std::span<ScanEdge> table_;
    Side side_;
    bool withColors_;
};

/// A walk round the polygon; `step` is 1 or -1.
int32_t Neighbour(const ScreenPolygon& polygon, int32_t i, int32_t step) {
    return (i + step + polygon.count) % polygon.count;
}

/// The last corner of those level with corner `top`, going one way round.
int32_t LastLevel(const ScreenPolygon& polygon, int32_t top, int32_t step) {
    int32_t i = top;
    while (polygon.At(Neighbour(polygon, i, step)).y == polygon.At(top).y) i = Neighbour(polygon, i, step);
    return i;
}

/// Whether the chain that goes forward is the left one.
bool IsReversed(const ScreenPolygon& polygon, int32_t forwardEnd, int32_t backwardEnd) {
    const ScreenVertex &end = polygon.At(forwardEnd), &e = polygon.At(backwardEnd);
    if (end.x != e.x) return end.x < e.x;
    const ScreenVertex& f = polygon.At(Neighbour(polygon, forwardEnd, 1));
    const ScreenVertex& k = polygon.At(Neighbour(polygon, backwardEnd, -1));
    return int64_t{k.y - e.y} * (f.x - e.x) - int64_t{k.x - e.x} * (f.y - e.y) < 0;
}

void WriteChain(const ScreenPolygon& polygon, int32_t from, int32_t to, int32_t step, ChainWriter writer) {
    for (int32_t i = from; i != to;) {
        const int32_t next = Neighbour(polygon, i, step);
        writer.StepEdge(polygon.At(i), polygon.At(next));
        i = next;
    }
}

}  // namespace

ScanRun ScanConvert(const ScreenPolygon& polygon, std::span<ScanEdge> table, bool withColors) {
    if (polygon.count < 3 || table.empty()) return {};
    int32_t top = 0, bottom = 0;
    for (int32_t i = 1; i < polygon.count; ++i) {
        if (polygon.At(i).y < polygon.At(top).y) top = i;
        if (polygon.At(i).y > polygon.At(bottom).y) bottom = i;
    }
    const int32_t rows = polygon.At(bottom).y - polygon.At(top).y;
    if (rows <= 0) return {};
    const int32_t forwardEnd = LastLevel(polygon, top, 1), backwardEnd = LastLevel(polygon, top, -1);
    const bool reversed = IsReversed(polygon, forwardEnd, backwardEnd);
    const Side forwardSide = reversed ? &ScanEdge::left : &ScanEdge::right;
    const Side backwardSide = reversed ? &ScanEdge::right : &ScanEdge::left;
    WriteChain(polygon, forwardEnd, bottom, 1, {table, forwardSide, withColors});
    WriteChain(polygon, backwardEnd, bottom, -1, {table, backwardSide, withColors});
    return {rows, polygon.At(top).y, table.data()};
}

}  // namespace sgl
