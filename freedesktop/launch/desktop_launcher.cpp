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

// The pending starts. No callback runs after its destruction.
class DesktopLauncher::Launches {
public:
    Launches(SystemLog& log, double patience)
        : m_log(log)
        , m_patience(patience) {}

    // `failure`: the start of the log message if it fails.
    void start(EntryHandle application, std::vector<std::string> links, std::string failure) {
        const int number = m_next++;
        auto pending = launch::startApplication(
            std::move(application), {std::move(links), {}}, m_patience,
            [this, number, failure = std::move(failure)](const Result<void>& result) {
                if (!result) {
                    m_log.log("QRV: " + failure + ": " + result.error().what);
                }
                m_pending.erase(number);
            });
        if (pending) {
            m_pending.emplace(number, std::move(pending));
        }
    }
    bool isPending() const { return !m_pending.empty(); }

private:
    SystemLog& m_log;
    double m_patience;
    int m_next = 0;
    std::map<int, std::shared_ptr<launch::PendingStart>> m_pending;
};

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
    : m_log(log)
    , m_launches(std::make_unique<Launches>(log, patience)) {}

DesktopLauncher::~DesktopLauncher() = default;

void DesktopLauncher::openURL(const NSURL& url) {
    const std::string& link = url.absoluteString();
    if (const auto checked = checkLink(link); !checked) {
        m_log.log("QRV: the link " + shortened(link) + " is not opened: " + checked.error().what);
        return;
    }
    const std::string scheme = link.substr(0, link.find(':'));
    EntryHandle handler = handlerOf(scheme);
    if (!handler) {
        m_log.log("QRV: no application opens " + scheme + " links");
        return;
    }
    m_launches->start(std::move(handler), {link},
                      "the link " + shortened(link) + " could not be opened");
}

std::shared_ptr<SBApplication>
DesktopLauncher::applicationWithDisplayIdentifier(std::string_view identifier) {
    const auto name = desktopEntryName(identifier);
    EntryHandle entry(name ? g_desktop_app_info_new(name->c_str()) : nullptr);
    if (!entry) {
        m_log.log("QRV: there is no application " + shortened(identifier));
        return nullptr;
    }
    return std::make_shared<InstalledApplication>(std::move(entry));
}

void DesktopLauncher::activateApplicationAnimated(
    const std::shared_ptr<SBApplication>& application) {
    const auto* installed = dynamic_cast<const InstalledApplication*>(application.get());
    if (installed == nullptr) {
        m_log.log("QRV: there is no application to bring to the front");
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

} // namespace quorvel::freedesktop
