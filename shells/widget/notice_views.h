// The views of a host's notices: a centred line, and a mark with a reason at the bottom.
#pragma once

#include <memory>
#include <string>

#include "platform/geometry.h"
#include "shells/widget/notices.h"

namespace quorvel::platform {
class TextMeasurer;
class UILabel;
class UIView;
} // namespace quorvel::platform

namespace quorvel::shells {

struct Appearance;

// All lengths in points. They follow the text measurer, so lay out again when that changes.
class NoticeViews {
public:
    // Adds its views to the container, in front of those that it has. Both outlive the object,
    // unless the container's whole tree of views is destroyed first.
    NoticeViews(platform::TextMeasurer& textMeasurer, platform::UIView& container);
    ~NoticeViews(); // removes the views
    NoticeViews(const NoticeViews&) = delete;
    NoticeViews& operator=(const NoticeViews&) = delete;

    void show(Notices notices);
    const Notices& notices() const { return m_notices; }
    void setAppearance(const Appearance& appearance);

    // The least height in which the line can be read; 0 without a line.
    platform::CGFloat lineHeight() const;
    // The height that the problem takes at the bottom; 0 without a problem.
    platform::CGFloat problemHeight() const;
    // In the container's coordinates.
    void layOut(const platform::CGRect& area);

private:
    class ProblemView;

    platform::TextMeasurer& m_textMeasurer;
    Notices m_notices;
    std::shared_ptr<platform::UILabel> m_line;
    std::shared_ptr<ProblemView> m_problem;
};

} // namespace quorvel::shells
