#include "Platform/Gtk/PagePermissions.h"

#include "Platform/Gtk/Ref.h"

#include <array>
#include <optional>
#include <string_view>
#include <utility>

namespace tarn::gtk {

namespace {

using platform::Permission;

std::vector<Permission> permissionsOf(WebKitPermissionRequest* request)
{
    if (WEBKIT_IS_USER_MEDIA_PERMISSION_REQUEST(request)) {
        auto* const media = WEBKIT_USER_MEDIA_PERMISSION_REQUEST(request);
        if (webkit_user_media_permission_is_for_display_device(media))
            return { Permission::screen };
        std::vector<Permission> permissions;
        if (webkit_user_media_permission_is_for_video_device(media))
            permissions.push_back(Permission::camera);
        if (webkit_user_media_permission_is_for_audio_device(media))
            permissions.push_back(Permission::microphone);
        // Neither of the two is a screen as well.
        if (permissions.empty())
            permissions.push_back(Permission::screen);
        return permissions;
    }
    if (WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(request))
        return { Permission::location };
    if (WEBKIT_IS_CLIPBOARD_PERMISSION_REQUEST(request))
        return { Permission::clipboard };
    if (WEBKIT_IS_POINTER_LOCK_PERMISSION_REQUEST(request))
        return { Permission::pointerLock };
    return {};
}

// By the names of the Permissions API.
std::optional<Permission> permissionNamed(std::string_view name)
{
    static constexpr std::array<std::pair<std::string_view, Permission>, 5> names { {
        { "camera", Permission::camera },
        { "microphone", Permission::microphone },
        { "display-capture", Permission::screen },
        { "geolocation", Permission::location },
        { "clipboard-read", Permission::clipboard },
    } };
    for (auto const& [known, permission] : names) {
        if (known == name)
            return permission;
    }
    return std::nullopt;
}

}

PagePermissions::PagePermissions(platform::WebView& view, WebKitWebView* engineView, Delegate delegate)
    : m_view(view)
    , m_delegate(std::move(delegate))
    , m_onRequest(engineView, "permission-request",
          [this](WebKitPermissionRequest* asked) -> gboolean { return request(asked); })
    , m_onQuery(engineView, "query-permission-state",
          [this](WebKitPermissionStateQuery* asked) -> gboolean { return query(asked); })
{
}

bool PagePermissions::request(WebKitPermissionRequest* request)
{
    auto permissions = permissionsOf(request);
    auto* const delegate = m_delegate();
    if (!delegate || permissions.empty())
        return false;
    delegate->requestPermission(m_view, { .permissions = std::move(permissions) },
        Reply<bool>(
            [request = share(request)](bool allowed) {
                if (allowed)
                    webkit_permission_request_allow(request.get());
                else
                    webkit_permission_request_deny(request.get());
            },
            false));
    return true;
}

bool PagePermissions::query(WebKitPermissionStateQuery* query)
{
    auto const permission = permissionNamed(webkit_permission_state_query_get_name(query));
    auto* const delegate = m_delegate();
    if (!delegate || !permission)
        return false;
    switch (delegate->permissionState(m_view, *permission)) {
    case platform::PermissionState::ask:
        webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_PROMPT);
        break;
    case platform::PermissionState::granted:
        webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_GRANTED);
        break;
    case platform::PermissionState::denied:
        webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_DENIED);
        break;
    }
    return true;
}

}
