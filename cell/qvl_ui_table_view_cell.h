// One row of the agenda: icon, title, date and location on a layer that can be pulled sideways.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ui/ui_table_view_cell.h"
#include "platform/ui_color.h"

namespace quorvel::platform {
class TextMeasurer;
class UIImageView;
class UILabel;
class UIScrollView;
class UITableView;
} // namespace quorvel::platform

namespace quorvel {

// The maker of the cell sets its subviews and fills them; the cell styles and places them.
// Each may be missing.
// NOLINTNEXTLINE(readability-identifier-naming): the system's own name
class QVL_UITableViewCell : public platform::UITableViewCell {
public:
    // The measurer outlives the cell.
    QVL_UITableViewCell(platform::TextMeasurer& textMeasurer, platform::UITableViewCellStyle style,
                        std::optional<std::string> reuseIdentifier);

    std::string_view className() const override { return "QVL_UITableViewCell"; }

    // The nearest table above the cell in its tree of views, or null.
    platform::UITableView* parentTableView() const;
    void layoutSubviews() override;

    const std::shared_ptr<platform::UIImageView>& iconView() const { return m_iconView; }
    void setIconView(std::shared_ptr<platform::UIImageView> view) { m_iconView = std::move(view); }
    // Reserved: stays null.
    const std::shared_ptr<platform::UILabel>& secondaryLabel() const { return m_secondaryLabel; }
    void setSecondaryLabel(std::shared_ptr<platform::UILabel> label) {
        m_secondaryLabel = std::move(label);
    }
    // The location.
    const std::shared_ptr<platform::UILabel>& subtitleLabel() const { return m_subtitleLabel; }
    void setSubtitleLabel(std::shared_ptr<platform::UILabel> label) {
        m_subtitleLabel = std::move(label);
    }
    // The title.
    const std::shared_ptr<platform::UILabel>& primaryLabel() const { return m_primaryLabel; }
    void setPrimaryLabel(std::shared_ptr<platform::UILabel> label) {
        m_primaryLabel = std::move(label);
    }
    // The date caption.
    const std::shared_ptr<platform::UILabel>& relevanceDateLabel() const {
        return m_relevanceDateLabel;
    }
    void setRelevanceDateLabel(std::shared_ptr<platform::UILabel> label) {
        m_relevanceDateLabel = std::move(label);
    }
    // Carries all of them.
    const std::shared_ptr<platform::UIScrollView>& scrollView() const { return m_scrollView; }
    void setScrollView(std::shared_ptr<platform::UIScrollView> view) {
        m_scrollView = std::move(view);
    }
    const std::optional<platform::UIColor>& calendarColor() const { return m_calendarColor; }
    void setCalendarColor(const std::optional<platform::UIColor>& color) {
        m_calendarColor = color;
    }

    std::vector<std::string_view> keys() const override;
    platform::KeyValue valueForKey(std::string_view key) const override;

private:
    void fitScrollView();
    void styleTitle();
    void placeLabels();

    platform::TextMeasurer& m_textMeasurer;
    std::shared_ptr<platform::UIImageView> m_iconView;
    std::shared_ptr<platform::UILabel> m_secondaryLabel;
    std::shared_ptr<platform::UILabel> m_subtitleLabel;
    std::shared_ptr<platform::UILabel> m_primaryLabel;
    std::shared_ptr<platform::UILabel> m_relevanceDateLabel;
    std::shared_ptr<platform::UIScrollView> m_scrollView;
    std::optional<platform::UIColor> m_calendarColor;
};

} // namespace quorvel
