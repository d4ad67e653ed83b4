#include "app/layer_choice.h"

#include <array>
#include <charconv>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "freedesktop/language/messages.h"

namespace quorvel::app {

using freedesktop::translated;
using window::Edges;
using window::Layer;
using window::LayerOptions;
using window::Margins;

namespace {

constexpr int greatestMargin = 10000; // points

constexpr std::array<std::pair<std::string_view, Layer>, 4> layers{{
    {"background", Layer::background},
    {"bottom", Layer::bottom},
    {"top", Layer::top},
    {"overlay", Layer::overlay},
}};

constexpr std::array<std::pair<std::string_view, bool Edges::*>, 4> edges{{
    {"top", &Edges::top},
    {"right", &Edges::right},
    {"bottom", &Edges::bottom},
    {"left", &Edges::left},
}};

std::vector<std::string> partsOf(const std::string& list) {
    std::vector<std::string> parts(1);
    for (const char character : list) {
        if (character == ',') {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

CommandResult<Layer> layerNamed(const std::string& name) {
    for (const auto& [layerName, layer] : layers) {
        if (layerName == name) {
            return layer;
        }
    }
    return usageFailure({filled(translated("unknown layer '{1}'"), {name}),
                         {},
                         translated("give background, bottom, top or overlay")});
}

CommandResult<Edges> edgesOf(const std::string& list) {
    Edges anchor;
    for (const std::string& name : partsOf(list)) {
        bool isKnown = false;
        for (const auto& [edgeName, edge] : edges) {
            if (edgeName == name) {
                anchor.*edge = true;
                isKnown = true;
            }
        }
        if (!isKnown) {
            return usageFailure(
                {filled(translated("unknown edge '{1}'"), {name}),
                 {},
                 translated("give some of top, right, bottom and left, with commas between")});
        }
    }
    return anchor;
}

std::optional<int> marginOf(const std::string& text) {
    int margin = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, margin);
    if (failure != std::errc() || stop != end || margin < 0 || margin > greatestMargin) {
        return std::nullopt;
    }
    return margin;
}

CommandResult<Margins> marginsOf(const std::string& list) {
    std::vector<int> margins;
    for (const std::string& text : partsOf(list)) {
        const std::optional<int> margin = marginOf(text);
        if (!margin) {
            return usageFailure({filled(translated("a margin cannot be '{1}'"), {text}),
                                 {},
                                 filled(translated("give a whole number of points from 0 to {1}"),
                                        {std::to_string(greatestMargin)})});
        }
        margins.push_back(*margin);
    }
    if (margins.size() == 1) {
        margins.resize(4, margins.front());
    }
    if (margins.size() != 4) {
        return usageFailure(
            {filled(translated("the margins '{1}' are neither one nor four"), {list}),
             {},
             translated("give one for all edges, or those of top,right,bottom,left")});
    }
    return Margins{margins[0], margins[1], margins[2], margins[3]};
}

CommandResult<void> checkOptionsWithoutLayer(const CommandLine& line) {
    const bool namesOutput = line.command == Command::show && !line.output.empty();
    const char* option = line.anchor   ? "--anchor"
                         : line.margin ? "--margin"
                         : namesOutput ? "--output"
                                       : nullptr;
    if (option != nullptr) {
        return usageFailure({filled(translated("the option {1} is for layers"), {option}),
                             {},
                             translated("choose one with --layer as well")});
    }
    return {};
}

} // namespace

CommandResult<std::optional<LayerOptions>> layerOf(const CommandLine& line) {
    if (!line.layer) {
        if (const CommandResult<void> checked = checkOptionsWithoutLayer(line); !checked) {
            return checked.error();
        }
        return std::optional<LayerOptions>();
    }
    if (line.decorated) {
        return usageFailure(
            {translated("a layer has no title bar"), {}, translated("leave out --decorated")});
    }
    const CommandResult<Layer> layer = layerNamed(*line.layer);
    if (!layer) {
        return layer.error();
    }
    const CommandResult<Edges> anchor = line.anchor ? edgesOf(*line.anchor) : Edges();
    if (!anchor) {
        return anchor.error();
    }
    const CommandResult<Margins> margins = line.margin ? marginsOf(*line.margin) : Margins();
    if (!margins) {
        return margins.error();
    }
    return std::optional(LayerOptions{*layer, *anchor, *margins, line.output});
}

} // namespace quorvel::app
