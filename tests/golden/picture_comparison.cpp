#include "tests/golden/picture_comparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

namespace quorvel::golden {
namespace {

constexpr std::size_t mostDifferences = 10;
constexpr double endWidth = 24; // points

using Components = std::array<int, 4>; // blue, green, red, alpha
using Mark = std::uint8_t;             // a vector of bool has no references

Components componentsOf(std::uint32_t pixel) {
    Components components{};
    for (unsigned i = 0; i < components.size(); ++i)
        components[i] = static_cast<int>((pixel >> (8U * i)) & 0xFFU);
    return components;
}

int distance(std::uint32_t a, std::uint32_t b) {
    const Components left = componentsOf(a);
    const Components right = componentsOf(b);
    int most = 0;
    for (std::size_t i = 0; i < left.size(); ++i)
        most = std::max(most, std::abs(left[i] - right[i]));
    return most;
}

// The least and the greatest value of each component among some pixels.
struct ColorRange {
    Components least{255, 255, 255, 255};
    Components greatest{};

    void add(const ColorRange& other) {
        for (std::size_t i = 0; i < least.size(); ++i) {
            least[i] = std::min(least[i], other.least[i]);
            greatest[i] = std::max(greatest[i], other.greatest[i]);
        }
    }
    int width() const {
        int most = 0;
        for (std::size_t i = 0; i < least.size(); ++i)
            most = std::max(most, greatest[i] - least[i]);
        return most;
    }
};

ColorRange rangeOf(std::uint32_t pixel) {
    return {componentsOf(pixel), componentsOf(pixel)};
}

int distance(const ColorRange& a, const ColorRange& b) {
    int most = 0;
    for (std::size_t i = 0; i < a.least.size(); ++i) {
        most = std::max(
            {most, std::abs(a.least[i] - b.least[i]), std::abs(a.greatest[i] - b.greatest[i])});
    }
    return most;
}

// One value for each pixel of a picture.
template <class Value>
class Grid {
public:
    Grid(int width, int height, Value value = {})
        : m_width(width)
        , m_height(height)
        , m_values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), value) {}
    int width() const { return m_width; }
    int height() const { return m_height; }
    bool holds(int x, int y) const { return x >= 0 && y >= 0 && x < m_width && y < m_height; }
    const Value& at(int x, int y) const { return m_values[index(x, y)]; }
    Value& at(int x, int y) { return m_values[index(x, y)]; }

private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
               static_cast<std::size_t>(x);
    }
    int m_width;
    int m_height;
    std::vector<Value> m_values;
};

// The range of the colours up to `reach` pixels around each pixel: first along the rows, then along
// the columns.
Grid<ColorRange> rangesAround(const Picture& picture, int reach) {
    Grid<ColorRange> rows(picture.width, picture.height);
    Grid<ColorRange> squares(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            for (int i = std::max(0, x - reach); i <= std::min(picture.width - 1, x + reach); ++i)
                rows.at(x, y).add(rangeOf(picture.at(i, y)));
        }
    }
    for (int y = 0; y < picture.height; ++y) {
        for (int i = std::max(0, y - reach); i <= std::min(picture.height - 1, y + reach); ++i) {
            for (int x = 0; x < picture.width; ++x)
                squares.at(x, y).add(rows.at(x, i));
        }
    }
    return squares;
}

bool isArea(const ColorRange& around) {
    return around.width() <= areaTolerance;
}

// The rectangle around pixels that belong together.
struct Box {
    int left = 0;
    int top = 0;
    int right = 0; // behind the last pixel
    int bottom = 0;

    int width() const { return right - left; }
    void add(const Box& other) {
        left = std::min(left, other.left);
        top = std::min(top, other.top);
        right = std::max(right, other.right);
        bottom = std::max(bottom, other.bottom);
    }
};

// Takes the marked pixels that are connected to one of them.
Box takeBox(Grid<Mark>& marked, int startX, int startY) {
    Box box{startX, startY, startX, startY};
    std::vector<std::pair<int, int>> next{{startX, startY}};
    marked.at(startX, startY) = 0;
    while (!next.empty()) {
        const auto [x, y] = next.back();
        next.pop_back();
        box.add({x, y, x + 1, y + 1});
        for (const auto& [i, j] : {std::pair(x - 1, y), {x + 1, y}, {x, y - 1}, {x, y + 1}}) {
            if (marked.holds(i, j) && marked.at(i, j) != 0) {
                marked.at(i, j) = 0;
                next.emplace_back(i, j);
            }
        }
    }
    return box;
}

std::vector<Box> boxesOf(Grid<Mark> marked) {
    std::vector<Box> boxes;
    for (int y = 0; y < marked.height(); ++y) {
        for (int x = 0; x < marked.width(); ++x) {
            if (marked.at(x, y) != 0)
                boxes.push_back(takeBox(marked, x, y));
        }
    }
    return boxes;
}

template <class Rule>
std::vector<Box> boxesWhere(int width, int height, Rule rule) {
    Grid<Mark> marked(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            marked.at(x, y) = rule(x, y) ? 1 : 0;
    }
    return boxesOf(std::move(marked));
}

// Letters and most words of a line of text are nearer than this, and what else the rows show is
// not.
bool belongTogether(const Box& a, const Box& b, double scale) {
    constexpr double mostAcross = 8; // points
    const int across = std::max(a.left, b.left) - std::min(a.right, b.right);
    const int down = std::max(a.top, b.top) - std::min(a.bottom, b.bottom);
    return across < mostAcross * scale && down < 0;
}

// Adds those to each other that belong together by the rule.
template <class Part, class Rule>
std::vector<Part> joined(const std::vector<Part>& parts, Rule rule) {
    std::vector<Part> result;
    for (Part part : parts) {
        const auto belongs = [&](const Part& other) { return rule(part, other); };
        for (auto found = std::find_if(result.begin(), result.end(), belongs);
             found != result.end(); found = std::find_if(result.begin(), result.end(), belongs)) {
            part.add(*found);
            result.erase(found);
        }
        result.push_back(part);
    }
    return result;
}

std::vector<Box> inkBoxes(const Picture& picture, double scale) {
    const Grid<ColorRange> ranges = rangesAround(picture, 1);
    return joined(boxesWhere(picture.width, picture.height,
                             [&](int x, int y) { return !isArea(ranges.at(x, y)); }),
                  [scale](const Box& a, const Box& b) { return belongTogether(a, b, scale); });
}

// What takes the same place in the golden picture and in the drawn one. Words that are one box in
// one of them and two in the other take one place.
struct Place {
    std::optional<Box> golden;
    std::optional<Box> drawn;

    void add(const Place& other) {
        add(golden, other.golden);
        add(drawn, other.drawn);
    }

private:
    static void add(std::optional<Box>& box, const std::optional<Box>& other) {
        if (box && other)
            box->add(*other);
        else if (other)
            box = other;
    }
};

bool overlap(const std::optional<Box>& a, const std::optional<Box>& b) {
    return a && b && a->left < b->right && b->left < a->right && a->top < b->bottom &&
           b->top < a->bottom;
}

std::vector<Place> placesIn(const Picture& golden, const Picture& drawn, double scale) {
    std::vector<Place> places;
    for (const Box& box : inkBoxes(golden, scale))
        places.push_back({box, std::nullopt});
    for (const Box& box : inkBoxes(drawn, scale))
        places.push_back({std::nullopt, box});
    return joined(places, [](const Place& a, const Place& b) {
        return overlap(a.golden, b.drawn) || overlap(a.drawn, b.golden);
    });
}

std::string placeOf(const Box& box) {
    return std::to_string(box.width()) + " x " + std::to_string(box.bottom - box.top) +
           " pixels at " + std::to_string(box.left) + "," + std::to_string(box.top);
}

std::string sizeOf(const Picture& picture) {
    return std::to_string(picture.width) + " x " + std::to_string(picture.height) +
           (picture.hasAlpha ? " with alpha" : " without alpha");
}

std::string textOf(const ColorRange& range) {
    std::string text;
    for (const std::size_t i : {2U, 1U, 0U, 3U}) { // red first, alpha last
        text += (text.empty() ? "" : " ") + std::to_string(range.least[i]) + "-" +
                std::to_string(range.greatest[i]);
    }
    return text;
}

ColorRange rangeIn(const Picture& picture, const Box& box) {
    ColorRange range;
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x)
            range.add(rangeOf(picture.at(x, y)));
    }
    return range;
}

bool areNear(int a, int b, double scale) {
    return std::abs(a - b) <= positionTolerance * scale;
}

// Where in one picture the place before this one ends in the same line; 0 for the first.
int endBefore(const std::vector<Place>& places, std::optional<Box> Place::*picture,
              const Box& box) {
    int end = 0;
    for (const Place& place : places) {
        const auto& other = place.*picture;
        if (other && other->top < box.bottom && box.top < other->bottom && other->right <= box.left)
            end = std::max(end, other->right);
    }
    return end;
}

bool isInPlace(const std::vector<Place>& places, const Box& golden, const Box& drawn,
               double scale) {
    const bool isInLine =
        areNear(golden.top, drawn.top, scale) && areNear(golden.bottom, drawn.bottom, scale);
    const bool isAsWide = std::abs(golden.width() - drawn.width()) <=
                          positionTolerance * scale + widthTolerance * golden.width();
    const auto gap = golden.left - endBefore(places, &Place::golden, golden);
    const auto drawnGap = drawn.left - endBefore(places, &Place::drawn, drawn);
    return isInLine && isAsWide &&
           (areNear(golden.left, drawn.left, scale) || areNear(golden.right, drawn.right, scale) ||
            areNear(gap, drawnGap, scale));
}

// A piece of a letter that the picture's edge cuts off has hardly a pixel without another's light.
bool showsItsColors(const Box& box, double scale) {
    constexpr double smallestLetter = 6; // points
    return std::max(box.width(), box.bottom - box.top) >= smallestLetter * scale;
}

// In all of the box, and at both of its ends: a line may begin with a title and end with a date.
std::vector<Box> colorSamples(const Box& box, double scale) {
    const int end = static_cast<int>(endWidth * scale);
    return {box,
            {box.left, box.top, std::min(box.right, box.left + end), box.bottom},
            {std::max(box.left, box.right - end), box.top, box.right, box.bottom}};
}

std::string colorDifference(const Picture& golden, const Box& goldenBox, const Picture& drawn,
                            const Box& drawnBox, double scale) {
    const std::vector<Box> samples = colorSamples(goldenBox, scale);
    const std::vector<Box> drawnSamples = colorSamples(drawnBox, scale);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const ColorRange expected = rangeIn(golden, samples[i]);
        const ColorRange actual = rangeIn(drawn, drawnSamples[i]);
        if (distance(expected, actual) > inkTolerance) {
            return placeOf(samples[i]) + " have the colours " + textOf(actual) + " instead of " +
                   textOf(expected);
        }
    }
    return {};
}

void comparePlaces(const Picture& golden, const Picture& drawn, double scale,
                   std::vector<std::string>& differences) {
    const std::vector<Place> places = placesIn(golden, drawn, scale);
    for (const Place& place : places) {
        if (!place.drawn) {
            differences.push_back(placeOf(*place.golden) + " are missing");
        } else if (!place.golden) {
            differences.push_back(placeOf(*place.drawn) + " were not there");
        } else if (!isInPlace(places, *place.golden, *place.drawn, scale)) {
            differences.push_back(placeOf(*place.golden) + " are now " + placeOf(*place.drawn));
        } else if (showsItsColors(*place.golden, scale)) {
            const std::string difference =
                colorDifference(golden, *place.golden, drawn, *place.drawn, scale);
            if (!difference.empty())
                differences.push_back(difference);
        }
    }
}

// What lies in the midst of an area in both pictures has the same colour.
void compareAreas(const Picture& golden, const Picture& drawn, double scale,
                  std::vector<std::string>& differences) {
    const int reach = static_cast<int>(std::ceil(positionTolerance * scale));
    const Grid<ColorRange> expected = rangesAround(golden, reach);
    const Grid<ColorRange> actual = rangesAround(drawn, reach);
    const int height = std::min(golden.height, drawn.height);
    for (const Box& box : boxesWhere(golden.width, height, [&](int x, int y) {
             return isArea(expected.at(x, y)) && isArea(actual.at(x, y)) &&
                    distance(expected.at(x, y), actual.at(x, y)) > areaTolerance;
         }))
        differences.push_back(placeOf(box) + " are in another colour");
}

bool haveSameSize(const Picture& golden, const Picture& drawn, double scale) {
    return golden.width == drawn.width && areNear(golden.height, drawn.height, scale) &&
           golden.hasAlpha == drawn.hasAlpha;
}

} // namespace

double differingShare(const Picture& golden, const Picture& drawn) {
    constexpr int pixelTolerance = 24;
    if (golden.width != drawn.width || golden.height != drawn.height ||
        golden.hasAlpha != drawn.hasAlpha || golden.pixels.empty())
        return 1;
    std::size_t differing = 0;
    for (std::size_t i = 0; i < golden.pixels.size(); ++i)
        differing += distance(golden.pixels[i], drawn.pixels[i]) > pixelTolerance ? 1 : 0;
    return static_cast<double>(differing) / static_cast<double>(golden.pixels.size());
}

std::vector<std::string> structuralDifferences(const Picture& golden, const Picture& drawn,
                                               double scale) {
    if (!haveSameSize(golden, drawn, scale))
        return {"the size is " + sizeOf(drawn) + " instead of " + sizeOf(golden)};
    std::vector<std::string> differences;
    comparePlaces(golden, drawn, scale, differences);
    compareAreas(golden, drawn, scale, differences);
    if (differences.size() > mostDifferences)
        differences.resize(mostDifferences);
    return differences;
}

} // namespace quorvel::golden
