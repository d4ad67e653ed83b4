#include "shells/headless/inspect.h"

#include <string_view>
#include <utility>
#include <variant>

#include "platform/key_value_coding.h"
#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_view.h"
#include "shells/headless/json.h"
#include "shells/headless/script.h"
#include "shells/headless/view_json.h"
#include "shells/headless/widget_session.h"

namespace quorvel::headless {

using platform::CGFloat;
using platform::KeyValueCoding;

namespace {

// Does one step and gives what the operation returned.
class StepRunner {
public:
    StepRunner(WidgetSession& session, Surroundings& surroundings)
        : m_session(session)
        , m_surroundings(surroundings) {}

    Json operator()(const PresentStep&) const {
        m_session.present();
        return nullptr;
    }
    Json operator()(const DismissStep&) const {
        m_session.dismiss();
        return nullptr;
    }
    Json operator()(const SizeStep&) const { return sizeJson(m_session.preferredViewSize()); }
    Json operator()(const LayoutStep& step) const {
        m_session.resizeView(step.size);
        return nullptr;
    }
    Json operator()(const ScrollStep& step) const {
        if (platform::UITableView* table = m_session.table()) {
            table->setContentOffset({table->contentOffset().x, step.offset});
        }
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
    Surroundings& m_surroundings;
};

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

// What the step left behind, the tree laid out so that visible rows have cells.
Json stepJson(WidgetSession& session, const std::string& text, Json result) {
    session.layOut();
    Json json = Json::object();
    json["do"] = text;
    json["result"] = std::move(result);
    json["host"] = hostMessagesJson(session.takeHostMessages());
    json["opened"] = Json::array();
    json["activated"] = Json::array();
    json["touches"] = Json::array();
    json["log"] = session.takeLogLines();
    return json;
}

Json settingsJson(const WidgetSession& session) {
    Json json = Json::object();
    const KeyValueCoding& values = session.processWideValues();
    for (const std::string_view key : values.keys()) {
        json[std::string(key)] = valueJson(values.valueForKey(key));
    }
    json["swipeAction"] = valueJson(session.view().valueForKey("swipeAction"));
    return json;
}

Json itemsJson(const WidgetSession& session) {
    Json array = Json::array();
    for (const auto& record : session.items()) {
        Json& json = array.emplace_back(Json::object());
        for (const std::string_view key :
             {"title", "location", "URL", "isAllDay", "startDate", "endDate", "calendarColor"}) {
            json[std::string(key)] = valueJson(record->valueForKey(key));
        }
    }
    return array;
}

void loadAtWidth(WidgetSession& session, const std::optional<CGFloat>& width) {
    session.load();
    if (width) {
        session.resizeView({*width, session.view().frame().size.height});
    }
}

} // namespace

std::string inspectDocument(WidgetSession& session, Surroundings& surroundings,
                            const std::vector<Step>& steps, const std::optional<CGFloat>& width) {
    Json document = Json::object();
    document["controller"] = session.controllerName();
    Json entries = Json::array();
    loadAtWidth(session, width);
    entries.push_back(stepJson(session, "load", nullptr));
    const StepRunner runner(session, surroundings);
    for (const Step& step : steps) {
        Json result = std::visit(runner, step.action);
        entries.push_back(stepJson(session, step.text, std::move(result)));
    }
    document["steps"] = std::move(entries);
    document["settings"] = settingsJson(session);
    document["items"] = itemsJson(session);
    document["totalHeight"] = valueJson(session.controller().valueForKey("totalHeight"));
    document["view"] = viewJson(session.view(), session.platform().textMeasurer);
    return documentText(document);
}

} // namespace quorvel::headless
