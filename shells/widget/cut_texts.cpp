#include "shells/widget/cut_texts.h"

#include "base/utf8.h"
#include "platform/text_measurer.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_table_view_cell.h"
#include "shells/widget/hosted_widget.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::NSInteger;
using platform::UILabel;
using platform::UIView;

namespace {

constexpr std::size_t longestText = 400; // bytes; titles come from strangers

std::string bounded(const std::string& text) {
    if (text.size() <= longestText) {
        return text;
    }
    std::size_t end = 0;
    for (std::size_t next = 0; next <= longestText;
         next += decodeCharacter(std::string_view(text).substr(next)).length) {
        end = next;
    }
    return text.substr(0, end) + "…";
}

bool isCut(const UILabel& label, platform::TextMeasurer& textMeasurer) {
    constexpr CGFloat tolerance = 0.5; // points; labels have the width of their text, rounded
    const bool isShown = label.text() && !label.isHidden();
    return isShown && textMeasurer.sizeWithFont(*label.text(), label.font()).width >
                          label.bounds().size.width + tolerance;
}

void collect(const UIView& view, platform::TextMeasurer& textMeasurer,
             std::vector<std::string>& texts) {
    const auto* const label = dynamic_cast<const UILabel*>(&view);
    if (label != nullptr && isCut(*label, textMeasurer)) {
        texts.push_back(bounded(*label->text()));
    }
    for (const auto& subview : view.subviews()) {
        collect(*subview, textMeasurer, texts);
    }
}

} // namespace

std::vector<std::string> cutTexts(const HostedWidget& widget, std::size_t row,
                                  platform::TextMeasurer& textMeasurer) {
    std::vector<std::string> texts;
    const platform::UITableView* const table = widget.table();
    const auto cell =
        table != nullptr ? table->cellForRowAtIndexPath({0, static_cast<NSInteger>(row)}) : nullptr;
    if (cell) {
        collect(*cell, textMeasurer, texts);
    }
    return texts;
}

} // namespace quorvel::shells
