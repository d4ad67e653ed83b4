#include "shells/headless/view_json.h"

#include <memory>
#include <optional>

#include "platform/text_measurer.h"
#include "platform/ui/ui_image_view.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_scroll_view.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_table_view_cell.h"
#include "platform/ui/ui_view.h"

namespace quorvel::headless {

using platform::CGSize;
using platform::NSIndexPath;
using platform::TextMeasurer;
using platform::UIImage;
using platform::UIImageView;
using platform::UILabel;
using platform::UIScrollView;
using platform::UITableView;
using platform::UITableViewCell;
using platform::UIView;

namespace {

void addScrollView(Json& json, const UIScrollView& view) {
    json["contentSize"] = sizeJson(view.contentSize());
    json["contentOffset"] =
        Json::array({numberJson(view.contentOffset().x), numberJson(view.contentOffset().y)});
    json["scrollEnabled"] = view.isScrollEnabled();
    json["alwaysBounceHorizontal"] = view.alwaysBounceHorizontal();
}

void addTable(Json& json, const UITableView& table) {
    json["separatorStyle"] = static_cast<int>(table.separatorStyle());
    Json& heights = json["rowHeights"] = Json::array();
    for (const platform::CGFloat height : table.rowHeights()) {
        heights.push_back(numberJson(height));
    }
}

std::optional<NSIndexPath> rowOfCell(const UITableViewCell& cell) {
    for (const UIView* view = cell.superview(); view != nullptr; view = view->superview()) {
        if (const auto* table = dynamic_cast<const UITableView*>(view)) {
            return table->indexPathForCell(cell);
        }
    }
    return std::nullopt;
}

void addCell(Json& json, const UITableViewCell& cell) {
    const std::optional<NSIndexPath> indexPath = rowOfCell(cell);
    json["row"] = indexPath ? Json(indexPath->row) : Json(nullptr);
    json["reuseIdentifier"] = textJson(cell.reuseIdentifier());
    json["calendarColor"] = valueJson(cell.valueForKey("calendarColor"));
}

void addLabel(Json& json, const UILabel& label, TextMeasurer& textMeasurer) {
    json["text"] = textJson(label.text());
    json["textColor"] = colorJson(label.textColor());
    json["fontSize"] = numberJson(label.font().pointSize);
    json["textSize"] =
        sizeJson(label.text() ? textMeasurer.sizeWithFont(*label.text(), label.font()) : CGSize{});
    Json& attributed = json["attributedText"] = nullptr;
    if (label.attributedText()) {
        attributed = Json::object();
        attributed["string"] = label.attributedText()->string;
        attributed["foregroundColor"] = colorJson(label.attributedText()->foregroundColor);
    }
}

Json imageJson(const std::shared_ptr<const UIImage>& image) {
    if (!image) {
        return nullptr;
    }
    Json json = Json::object();
    json["size"] = sizeJson(image->size());
    json["scale"] = numberJson(image->scale());
    if (const auto& insets = image->capInsets()) {
        json["capInsets"] = Json::array({numberJson(insets->top), numberJson(insets->left),
                                         numberJson(insets->bottom), numberJson(insets->right)});
    }
    return json;
}

void addImageView(Json& json, const UIImageView& view) {
    json["contentMode"] = std::string(platform::contentModeName(view.contentMode()));
    json["image"] = imageJson(view.image());
}

} // namespace

Json viewJson(const UIView& view, TextMeasurer& textMeasurer) {
    Json json = Json::object();
    json["class"] = std::string(view.className());
    json["frame"] = rectJson(view.frame());
    json["tag"] = view.tag();
    json["backgroundColor"] = colorJson(view.backgroundColor());
    json["autoresizingMask"] = view.autoresizingMask();
    json["userInteractionEnabled"] = view.isUserInteractionEnabled();
    if (const auto* scrollView = dynamic_cast<const UIScrollView*>(&view)) {
        addScrollView(json, *scrollView);
    }
    if (const auto* table = dynamic_cast<const UITableView*>(&view)) {
        addTable(json, *table);
    } else if (const auto* cell = dynamic_cast<const UITableViewCell*>(&view)) {
        addCell(json, *cell);
    } else if (const auto* label = dynamic_cast<const UILabel*>(&view)) {
        addLabel(json, *label, textMeasurer);
    } else if (const auto* imageView = dynamic_cast<const UIImageView*>(&view)) {
        addImageView(json, *imageView);
    }
    Json& subviews = json["subviews"] = Json::array();
    for (const std::shared_ptr<UIView>& subview : view.subviews()) {
        subviews.push_back(viewJson(*subview, textMeasurer));
    }
    return json;
}

} // namespace quorvel::headless
