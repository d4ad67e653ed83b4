#include "shells/widget/notice_views.h"

#include <algorithm>
#include <utility>

#include "platform/screen.h"
#include "platform/text_measurer.h"
#include "platform/ui/ui_label.h"
#include "platform/ui/ui_window.h"
#include "shells/widget/appearance.h"

namespace quorvel::shells {

using platform::CGFloat;
using platform::CGRect;
using platform::CGRectMake;
using platform::CGSize;
using platform::GraphicsContext;
using platform::UIColor;
using platform::UIFont;
using platform::UILabel;
using platform::UIView;

namespace {

constexpr CGFloat lineFontSize = 14;
constexpr CGFloat lineInset = 12;   // at least, on the left and the right
constexpr CGFloat lineMargin = 13;  // above and below
constexpr CGFloat leastHeight = 44; // of the line with its margins

constexpr CGFloat problemFontSize = 12;
constexpr CGFloat problemMargin = 8; // above and below
// Where the rows have their icons and titles.
constexpr CGFloat markCenter = 23;
constexpr CGFloat textInset = 47;
constexpr CGFloat rightInset = 10;
constexpr CGFloat markDiameter = 14;

std::shared_ptr<UILabel> makeLabel(CGFloat fontSize) {
    auto label = std::make_shared<UILabel>();
    label->setFont(UIFont::systemFontOfSize(fontSize));
    return label;
}

} // namespace

// A hairline, an exclamation mark in a disc, and two lines of text.
class NoticeViews::ProblemView final : public UIView {
public:
    ProblemView()
        : m_name(makeLabel(problemFontSize))
        , m_reason(makeLabel(problemFontSize)) {
        setUserInteractionEnabled(false);
        addSubview(m_name);
        addSubview(m_reason);
    }

    void show(const ProblemNotice& problem) {
        m_name->setText(problem.name);
        m_reason->setText(problem.reason);
    }
    void setAppearance(const Appearance& appearance) {
        m_discColor = appearance.caption;
        m_signColor = appearance.backdrop;
        m_lineColor = appearance.title;
        m_lineColor.alpha *= appearance.separatorOpacity;
        m_name->setTextColor(appearance.title);
        m_reason->setTextColor(appearance.caption);
    }
    void setHasHairline(bool hasHairline) { m_hasHairline = hasHairline; }

    void layoutSubviews() override {
        const CGFloat width = bounds().size.width - textInset - rightInset;
        const CGFloat lineHeight = bounds().size.height / 2 - problemMargin;
        m_name->setFrame(CGRectMake(textInset, problemMargin, width, lineHeight));
        m_reason->setFrame(CGRectMake(textInset, problemMargin + lineHeight, width, lineHeight));
    }

    void drawRect(GraphicsContext& context) override {
        if (m_hasHairline) {
            const CGFloat scale = window() != nullptr ? window()->screen().scale() : 1;
            context.setFillColor(m_lineColor);
            context.fillHairline(CGRectMake(0, 0, bounds().size.width, scale > 0 ? 1 / scale : 1));
        }
        const CGFloat middle = bounds().size.height / 2;
        const CGFloat radius = markDiameter / 2;
        context.setFillColor(m_discColor);
        context.fillEllipseInRect(
            CGRectMake(markCenter - radius, middle - radius, markDiameter, markDiameter));
        context.setFillColor(m_signColor);
        context.fillRect(CGRectMake(markCenter - 1, middle - 4, 2, 5));
        context.fillEllipseInRect(CGRectMake(markCenter - 1, middle + 2, 2, 2));
    }

private:
    std::shared_ptr<UILabel> m_name;
    std::shared_ptr<UILabel> m_reason;
    UIColor m_discColor;
    UIColor m_signColor;
    UIColor m_lineColor;
    bool m_hasHairline = false;
};

NoticeViews::NoticeViews(platform::TextMeasurer& textMeasurer, UIView& container)
    : m_textMeasurer(textMeasurer)
    , m_line(makeLabel(lineFontSize))
    , m_problem(std::make_shared<ProblemView>()) {
    container.addSubview(m_line);
    container.addSubview(m_problem);
    show({});
}

NoticeViews::~NoticeViews() {
    m_line->removeFromSuperview();
    m_problem->removeFromSuperview();
}

void NoticeViews::show(Notices notices) {
    m_notices = std::move(notices);
    m_line->setText(m_notices.line);
    m_line->setHidden(!m_notices.line);
    m_problem->show(m_notices.problem.value_or(ProblemNotice()));
    m_problem->setHidden(!m_notices.problem);
    m_problem->setHasHairline(!m_notices.line);
}

void NoticeViews::setAppearance(const Appearance& appearance) {
    m_line->setTextColor(appearance.caption);
    m_problem->setAppearance(appearance);
}

CGFloat NoticeViews::lineHeight() const {
    if (!m_notices.line) {
        return 0;
    }
    const CGFloat height = m_textMeasurer.sizeWithFont(*m_notices.line, m_line->font()).height;
    return std::max(height + 2 * lineMargin, leastHeight);
}

CGFloat NoticeViews::problemHeight() const {
    if (!m_notices.problem) {
        return 0;
    }
    const UIFont font = UIFont::systemFontOfSize(problemFontSize);
    return 2 * (m_textMeasurer.sizeWithFont("A", font).height + problemMargin);
}

void NoticeViews::layOut(const CGRect& area) {
    const CGFloat problem = problemHeight();
    m_problem->setFrame(
        CGRectMake(area.origin.x, CGRectGetMaxY(area) - problem, area.size.width, problem));
    const CGFloat widest = std::max(area.size.width - 2 * lineInset, 0.0);
    const CGFloat width = std::min(
        m_textMeasurer.sizeWithFont(m_notices.line.value_or(""), m_line->font()).width, widest);
    m_line->setFrame(CGRectMake(area.origin.x + (area.size.width - width) / 2, area.origin.y, width,
                                std::max(area.size.height - problem, 0.0)));
}

} // namespace quorvel::shells
