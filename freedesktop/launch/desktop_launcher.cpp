#include "freedesktop/launch/desktop_launcher.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "freedesktop/glib/delayed_call.h"
#include "freedesktop/launch/application_start.h"
#include "freedesktop/launch/openable_link.h"
#include "platform/ns_url.h"

namespace quorvel::freedesktop {

using launch::EntryHandle;
using platform::NSURL;
using platform::SBApplication;
using platform::SystemLog;

// The pending starts and the reports of those that fail. No callback runs after its destruction.
class DesktopLauncher::Launches : public std::enable_shared_from_this<Launches> {
public:
    Launches(SystemLog& log, double patience)
        : m_log(log)
        , m_patience(patience) {}

    void setContext(LaunchContext* context) { m_context = context; }
    void setFailureHandler(LaunchFailureHandler onFailure) { m_onFailure = std::move(onFailure); }

    void report(std::string failure) {
        m_log.log("QRV: " + failure);
        if (m_onFailure) {
            m_onFailure({std::move(failure), {}, {}});
        }
    }
    // `failure`: the start of the report if it fails.
    void startLinkProgram(const std::string& path, const std::string& link,
                          const std::string& failure);
    void start(EntryHandle application, std::vector<std::string> links, const std::string& failure);
    bool isPending() const { return !m_pending.empty(); }

private:
    std::string makeToken(const std::string& entryName) {
        return m_context != nullptr ? m_context->makeToken(entryName) : std::string();
    }
    launch::OnEndedSoon reportOfProgram(const std::string& failure) {
        return [weak = weak_from_this(), failure] {
            if (const auto self = weak.lock()) {
                self->report(failure + ": its program failed");
            }
        };
    }
    void onStarted(const Result<void>& result, const std::string& token,
                   const std::string& failure);

    SystemLog& m_log;
    double m_patience;
    LaunchContext* m_context = nullptr; // null: none
    LaunchFailureHandler m_onFailure;   // null: none
    int m_next = 0;
    std::map<int, std::shared_ptr<launch::PendingStart>> m_pending;
};

void DesktopLauncher::Launches::startLinkProgram(const std::string& path, const std::string& link,
                                                 const std::string& failure) {
    const std::string token = makeToken({});
    onStarted(launch::startProcess({{path, link}, {}, token}, reportOfProgram(failure)), token,
              failure);
}

void DesktopLauncher::Launches::start(EntryHandle application, std::vector<std::string> links,
                                      const std::string& failure) {
    const int number = m_next++;
    const std::string token = makeToken(launch::nameOf(application.get()));
    launch::StartHandlers handlers{[this, number, token, failure](const Result<void>& result) {
                                       onStarted(result, token, failure);
                                       m_pending.erase(number);
                                   },
                                   reportOfProgram(failure)};
    auto pending = launch::startApplication(std::move(application), {std::move(links), {}, token},
                                            m_patience, std::move(handlers));
    if (pending) {
        m_pending.emplace(number, std::move(pending));
    }
}

void DesktopLauncher::Launches::onStarted(const Result<void>& result, const std::string& token,
                                          const std::string& failure) {
    if (result) {
        return;
    }
    if (m_context != nullptr && !token.empty()) {
        m_context->discardToken(token);
    }
    report(failure + ": " + result.error().what);
}

namespace {

struct InstalledApplication final : SBApplication {
    explicit InstalledApplication(EntryHandle application)
        : entry(std::move(application)) {}
    EntryHandle entry;
};

// Null if no application opens such links.
EntryHandle handlerOf(const std::string& scheme) {
    ObjectHandle<GAppInfo> handler(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
    return EntryHandle(G_IS_DESKTOP_APP_INFO(handler.get()) ? G_DESKTOP_APP_INFO(handler.release())
                                                            : nullptr);
}

} // namespace

DesktopLauncher::DesktopLauncher(SystemLog& log, double patience)
    : m_launches(std::make_shared<Launches>(log, patience)) {}

DesktopLauncher::~DesktopLauncher() = default;

void DesktopLauncher::setLaunchContext(LaunchContext* context) {
    m_launches->setContext(context);
}

void DesktopLauncher::setLinkProgram(std::string path) {
    m_linkProgram = std::move(path);
}

void DesktopLauncher::setFailureHandler(LaunchFailureHandler onFailure) {
    m_launches->setFailureHandler(std::move(onFailure));
}

void DesktopLauncher::openURL(const NSURL& url) {
    const std::string& link = url.absoluteString();
    if (const auto checked = checkLink(link); !checked) {
        m_launches->report("the link " + shortened(link) +
                           " is not opened: " + checked.error().what);
        return;
    }
    const std::string failure = "the link " + shortened(link) + " could not be opened";
    if (!m_linkProgram.empty()) {
        m_launches->startLinkProgram(m_linkProgram, link, failure);
        return;
    }
    const std::string scheme = link.substr(0, link.find(':'));
    EntryHandle handler = handlerOf(scheme);
    if (!handler) {
        m_launches->report("no application opens " + scheme + " links");
        return;
    }
    m_launches->start(std::move(handler), {link}, failure);
}

std::shared_ptr<SBApplication>
DesktopLauncher::applicationWithDisplayIdentifier(std::string_view identifier) {
    const auto name = desktopEntryName(identifier);
    EntryHandle entry(name ? g_desktop_app_info_new(name->c_str()) : nullptr);
    if (!entry) {
        m_launches->report("there is no application " + shortened(identifier));
        return nullptr;
    }
    return std::make_shared<InstalledApplication>(std::move(entry));
}

void DesktopLauncher::activateApplicationAnimated(
    const std::shared_ptr<SBApplication>& application) {
    const auto* installed = dynamic_cast<const InstalledApplication*>(application.get());
    if (installed == nullptr) {
        m_launches->report("there is no application to bring to the front");
        return;
    }
    m_launches->start(share(installed->entry.get()), {},
                      "the application " + launch::nameOf(installed->entry.get()) +
                          " could not be brought to the front");
}

bool DesktopLauncher::waitForLaunches(double seconds) {
    bool isOver = false;
    DelayedCall timeout([&isOver] { isOver = true; });
    timeout.start(seconds);
    while (m_launches->isPending() && !isOver) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return !m_launches->isPending();
}

std::unique_ptr<Launcher> makeDesktopLauncher(SystemLog& log) {
    return std::make_unique<DesktopLauncher>(log);
}

} // namespace quorvel::freedesktop
