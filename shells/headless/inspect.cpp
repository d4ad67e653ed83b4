#include "shells/headless/inspect.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <variant>

#include "freedesktop/language/messages.h"
#include "platform/key_value_coding.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_view.h"
#include "shells/headless/json.h"
#include "shells/headless/script.h"
#include "shells/headless/view_json.h"
#include "shells/headless/widget_session.h"

namespace quorvel::headless {

using freedesktop::translated;
using platform::CGFloat;
using platform::CGSize;
using platform::KeyValueCoding;
using shells::HostedWidget;

namespace {

// Runs one step and returns the result of its operation as JSON.
class StepRunner {
public:
    StepRunner(WidgetSession& session, Surroundings& surroundings)
        : m_session(session)
        , m_widget(session.widget())
        , m_surroundings(surroundings) {}

    Json operator()(const PresentStep&) const {
        m_widget.present();
        return nullptr;
    }
    Json operator()(const DismissStep&) const {
        m_widget.dismiss();
        return nullptr;
    }
    Json operator()(const SizeStep&) const {
        const CGSize size = m_widget.preferredViewSize();
        return m_widget.isLegacy() ? numberJson(size.height) : sizeJson(size);
    }
    Json operator()(const FullViewStep&) const {
        m_session.makeView();
        m_widget.loadFullView();
        return nullptr;
    }
    Json operator()(const PlaceholderStep&) const {
        m_session.makeView();
        m_widget.loadPlaceholderView();
        return nullptr;
    }
    Json operator()(const UnloadStep&) const {
        m_widget.unloadView();
        return nullptr;
    }
    Json operator()(const LayoutStep& step) const {
        m_session.resizeView(step.size);
        return nullptr;
    }
    Json operator()(const ScrollStep& step) const {
        if (platform::UITableView* table = m_widget.table()) {
            table->setContentOffset({table->contentOffset().x, step.offset});
        }
        return nullptr;
    }
    Json operator()(const PullStep& step) const {
        m_session.pullRow(step.row, step.distance);
        return nullptr;
    }
    Json operator()(const DragStep& step) const {
        m_session.drag(step.start, step.distance);
        return nullptr;
    }
    Json operator()(const TapStep& step) const {
        if (m_widget.isLegacy()) {
            m_session.makeView();
            const auto url = m_widget.launchURLForTapLocation(step.location);
            return url ? Json(url->absoluteString()) : Json(nullptr);
        }
        m_session.drag(step.location, {});
        return nullptr;
    }
    Json operator()(const PreferencesStep& step) const {
        m_surroundings.setPreferencesFolder(step.folder);
        return nullptr;
    }
    Json operator()(const CalendarsStep& step) const {
        m_surroundings.setCalendars(step.source);
        return nullptr;
    }
    Json operator()(const NowStep& step) const {
        m_surroundings.setNow(step.date);
        return nullptr;
    }

private:
    WidgetSession& m_session;
    HostedWidget& m_widget;
    Surroundings& m_surroundings;
};

bool isForLegacyControllers(const Step& step) {
    return std::holds_alternative<FullViewStep>(step.action) ||
           std::holds_alternative<PlaceholderStep>(step.action) ||
           std::holds_alternative<UnloadStep>(step.action);
}

Result<void> checkSteps(const HostedWidget& widget, const std::vector<Step>& steps) {
    const auto unsupported = std::ranges::find_if(steps, isForLegacyControllers);
    if (widget.isLegacy() || unsupported == steps.end()) {
        return {};
    }
    return Error{filled(translated("the step '{1}' cannot be run"), {unsupported->text}),
                 {},
                 filled(translated("{1} has no such operation, name a controller for older hosts "
                                   "with --controller"),
                        {widget.controllerName()})};
}

Json hostMessagesJson(const std::vector<HostMessage>& messages) {
    Json array = Json::array();
    for (const HostMessage& message : messages) {
        Json& json = array.emplace_back(Json::object());
        json["message"] = message.message;
        if (message.size) {
            json["size"] = sizeJson(*message.size);
        }
    }
    return array;
}

Json touchMessagesJson(const std::vector<TouchMessage>& messages) {
    Json array = Json::array();
    for (const TouchMessage& message : messages) {
        Json& json = array.emplace_back(Json::object());
        json["view"] = message.view;
        json["message"] = message.message;
        json["phase"] = static_cast<int>(message.phase);
    }
    return array;
}

// The result of the step, and everything that was recorded while it ran.
Json stepJson(WidgetSession& session, const std::string& text, Json result) {
    Json json = Json::object();
    json["do"] = text;
    json["result"] = std::move(result);
    json["host"] = hostMessagesJson(session.takeHostMessages());
    json["opened"] = session.takeOpened();
    json["activated"] = session.takeActivated();
    json["touches"] = touchMessagesJson(session.takeTouchMessages());
    json["log"] = session.takeLogLines();
    return json;
}

Json stepsJson(WidgetSession& session, Surroundings& surroundings, const std::vector<Step>& steps) {
    Json entries = Json::array();
    entries.push_back(stepJson(session, "load", nullptr));
    const StepRunner runner(session, surroundings);
    for (const Step& step : steps) {
        Json result = std::visit(runner, step.action);
        session.settle();
        entries.push_back(stepJson(session, step.text, std::move(result)));
    }
    return entries;
}

Json settingsJson(HostedWidget& widget) {
    Json json = Json::object();
    const KeyValueCoding& values = widget.processWideValues();
    for (const std::string_view key : values.keys()) {
        json[std::string(key)] = valueJson(values.valueForKey(key));
    }
    json["swipeAction"] = valueJson(widget.view().valueForKey("swipeAction"));
    return json;
}

Json itemsJson(HostedWidget& widget) {
    Json array = Json::array();
    for (const auto& record : widget.items()) {
        Json& json = array.emplace_back(Json::object());
        for (const std::string_view key :
             {"title", "location", "URL", "isAllDay", "startDate", "endDate", "calendarColor"}) {
            json[std::string(key)] = valueJson(record->valueForKey(key));
        }
    }
    return array;
}

} // namespace

Result<std::string> inspectDocument(WidgetSession& session, Surroundings& surroundings,
                                    const std::vector<Step>& steps,
                                    const std::optional<CGFloat>& width) {
    HostedWidget& widget = session.widget();
    if (const Result<void> checked = checkSteps(widget, steps); !checked) {
        return checked.error();
    }
    session.load(width);
    Json document = Json::object();
    document["controller"] = widget.controllerName();
    document["steps"] = stepsJson(session, surroundings, steps);
    session.makeView(); // the steps may have left a legacy controller without a view
    document["settings"] = settingsJson(widget);
    document["items"] = itemsJson(widget);
    document["totalHeight"] = valueJson(widget.controller().valueForKey("totalHeight"));
    document["view"] = viewJson(widget.view(), session.platform().textMeasurer);
    return documentText(document);
}

} // namespace quorvel::headless
