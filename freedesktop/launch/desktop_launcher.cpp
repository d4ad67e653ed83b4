#include "freedesktop/launch/desktop_launcher.h"

#include <string>
#include <utility>

#include <gio/gdesktopappinfo.h>

#include "freedesktop/launch/gio_handles.h"
#include "freedesktop/launch/openable_link.h"
#include "platform/ns_url.h"

namespace quorvel::freedesktop {

using launch::ErrorHandle;
using launch::ObjectHandle;
using launch::SourceHandle;
using platform::NSURL;
using platform::SBApplication;
using platform::SystemLog;

// What is under way. The replies hold it, so that one that comes after the launcher finds it empty.
class DesktopLauncher::Launches {
public:
    explicit Launches(SystemLog& log)
        : m_log(&log)
        , m_cancellable(g_cancellable_new()) {}

    void add() { ++m_pending; }
    void finish(const std::string& what, const GError* error) {
        --m_pending;
        if (error != nullptr && m_log != nullptr) {
            m_log->log("QRV: " + what + ": " + shortened(error->message));
        }
    }
    void abandon() {
        m_log = nullptr;
        g_cancellable_cancel(m_cancellable.get());
    }
    bool isPending() const { return m_pending > 0; }
    GCancellable* cancellable() const { return m_cancellable.get(); }

private:
    SystemLog* m_log; // null once the launcher is gone
    ObjectHandle<GCancellable> m_cancellable;
    int m_pending = 0;
};

namespace {

struct InstalledApplication final : SBApplication {
    explicit InstalledApplication(GAppInfo* application)
        : info(application) {}
    ObjectHandle<GAppInfo> info;
};

// What a reply is handed: whose it is, and how a failure is told.
template <class Launches>
struct Reply {
    std::shared_ptr<Launches> launches;
    std::string what;
};

} // namespace

DesktopLauncher::DesktopLauncher(SystemLog& log)
    : m_log(log)
    , m_launches(std::make_shared<Launches>(log)) {}

DesktopLauncher::~DesktopLauncher() {
    m_launches->abandon();
}

void DesktopLauncher::openURL(const NSURL& url) {
    const std::string& link = url.absoluteString();
    if (const auto problem = problemWithLink(link)) {
        m_log.log("QRV: the link " + shortened(link) + " is not opened: " + *problem);
        return;
    }
    const std::string scheme = link.substr(0, link.find(':'));
    // NOLINTNEXTLINE(misc-const-correctness): the library takes it as its own
    ObjectHandle<GAppInfo> handler(g_app_info_get_default_for_uri_scheme(scheme.c_str()));
    if (!handler) {
        m_log.log("QRV: no application opens " + scheme + " links");
        return;
    }
    start(handler.get(), link.c_str(), "the link " + shortened(link) + " could not be opened");
}

std::shared_ptr<SBApplication>
DesktopLauncher::applicationWithDisplayIdentifier(std::string_view identifier) {
    const auto name = desktopEntryName(identifier);
    GDesktopAppInfo* info = name ? g_desktop_app_info_new(name->c_str()) : nullptr;
    if (info == nullptr) {
        m_log.log("QRV: there is no application " + shortened(identifier));
        return nullptr;
    }
    return std::make_shared<InstalledApplication>(G_APP_INFO(info));
}

void DesktopLauncher::activateApplicationAnimated(
    const std::shared_ptr<SBApplication>& application) {
    const auto* installed = dynamic_cast<const InstalledApplication*>(application.get());
    if (installed == nullptr) {
        m_log.log("QRV: there is no application to bring to the front");
        return;
    }
    start(installed->info.get(), nullptr,
          std::string("the application ") + g_app_info_get_id(installed->info.get()) +
              " could not be brought to the front");
}

// `link` may be null: the application itself. One that the session bus can activate is activated
// there, any other is started directly; there is no shell on the way.
void DesktopLauncher::start(_GAppInfo* application, const char* link, std::string failure) {
    using LaunchReply = Reply<Launches>;
    GList links{const_cast<char*>(link), nullptr, nullptr};
    m_launches->add();
    g_app_info_launch_uris_async(
        application, link != nullptr ? &links : nullptr, nullptr, m_launches->cancellable(),
        [](GObject* source, GAsyncResult* result, gpointer data) {
            const std::unique_ptr<LaunchReply> reply(static_cast<LaunchReply*>(data));
            GError* error = nullptr;
            g_app_info_launch_uris_finish(G_APP_INFO(source), result, &error);
            const ErrorHandle held(error);
            reply->launches->finish(reply->what, error);
        },
        new LaunchReply{m_launches, std::move(failure)});
}

bool DesktopLauncher::waitForLaunches(double seconds) {
    bool isOver = false;
    const SourceHandle timeout(g_timeout_source_new(static_cast<guint>(seconds * 1000)));
    g_source_set_callback(
        timeout.get(),
        [](gpointer over) -> gboolean {
            *static_cast<bool*>(over) = true;
            return G_SOURCE_REMOVE;
        },
        &isOver, nullptr);
    g_source_attach(timeout.get(), nullptr);
    while (m_launches->isPending() && !isOver) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return !m_launches->isPending();
}

} // namespace quorvel::freedesktop
